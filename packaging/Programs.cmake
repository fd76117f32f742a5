# The programs, and what a desktop needs of them.
install(TARGETS kestrel-editor kestrel-browser kestrel-info
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
install(DIRECTORY ${KESTREL_PACKAGE_DIR}/share/kestrel-browser
  DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT programs)
install(FILES desktop/kestrel-editor.desktop desktop/kestrel-browser.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT programs)
install(FILES desktop/org.kestrellib2.editor.metainfo.xml desktop/org.kestrellib2.browser.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT programs)
install(FILES desktop/kestrellib2.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages COMPONENT programs)
install(FILES ${PROJECT_SOURCE_DIR}/Resources/application.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps RENAME kestrel-editor.svg COMPONENT programs)
foreach(program kestrel-editor kestrel-browser kestrel-info)
  install(FILES completions/${program}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT programs)
  kestrel_compress(man/${program}.1 page)
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT programs)
endforeach()
