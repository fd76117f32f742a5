# Packages for Debian, made by scripts/package: one for each component of the installation. A further component is a
# row of kestrel_package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrellib2)
set(CPACK_PACKAGE_VENDOR "The KestrelLib2 developers")
set(CPACK_PACKAGE_CONTACT "The KestrelLib2 developers <maintainers@kestrellib2.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The libraries use each other, and are in no installed package yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${KESTREL_PACKAGE_DIR}/${CMAKE_INSTALL_LIBDIR})
set(CPACK_COMPONENTS_ALL)

kestrel_compress(debian/changelog changelog)

# kestrel_package(COMPONENT NAME package SECTION section SUMMARY sentence TEXT text [DEPENDS packages] [ALL])
# ALL: it has no compiled code.
macro(kestrel_package component)
  cmake_parse_arguments(arg "ALL" "NAME;SECTION;SUMMARY;TEXT;DEPENDS" "" ${ARGN})
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${arg_NAME})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${arg_SECTION})
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${arg_DEPENDS}")
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${arg_SUMMARY}\n${arg_TEXT}")
  if(arg_ALL)
    set(CPACK_DEBIAN_${upper}_PACKAGE_ARCHITECTURE all)
  else()
    set(CPACK_DEBIAN_${upper}_PACKAGE_SHLIBDEPS ON)
  endif()
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${arg_NAME})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${documents} RENAME copyright COMPONENT ${component})
  install(FILES ${changelog} DESTINATION ${documents} COMPONENT ${component})
endmacro()

kestrel_package(libraries NAME libkestrel2 SECTION libs
  DEPENDS "libkestrel2-data (= ${PROJECT_VERSION})"
  SUMMARY "embeddable image editor and image browser - libraries"
  TEXT "The image editor and the image browser of KestrelLib2 as widgets, and its
imaging engine, for programs in C++, C and other languages that embed them.")
kestrel_package(data NAME libkestrel2-data SECTION libs ALL
  SUMMARY "embeddable image editor and image browser - help"
  TEXT "The help book of the image editor and the image browser of KestrelLib2.")
kestrel_package(development NAME libkestrel-dev SECTION libdevel
  DEPENDS "libkestrel2 (= ${PROJECT_VERSION}), qt6-base-dev"
  SUMMARY "embeddable image editor and image browser - development files"
  TEXT "The headers of KestrelLib2 and the files by which CMake and pkg-config find
it, to build programs that embed the image editor or the image browser.")
if(TARGET kestrel_c_library)
  kestrel_package(python NAME python3-kestrel SECTION python ALL
    DEPENDS "libkestrel2 (= ${PROJECT_VERSION}), python3 (>= 3.9)"
    SUMMARY "embeddable image editor and image browser - Python 3 package"
    TEXT "The classes of KestrelLib2 for programs in Python, which embed the image editor
or the image browser, or work on pictures without a display.")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-numpy, python3-pil, python3-pyqt6")
  # The compiled modules come and go with the package.
  set(scripts ${CMAKE_CURRENT_BINARY_DIR}/python)
  foreach(script postinst=py3compile prerm=py3clean)
    string(REGEX MATCH "(.+)=(.+)" all ${script})
    file(CONFIGURE OUTPUT ${scripts}/${CMAKE_MATCH_1} @ONLY CONTENT "#!/bin/sh
set -e
if command -v ${CMAKE_MATCH_2} >/dev/null 2>&1; then
  ${CMAKE_MATCH_2} -p python3-kestrel
fi
")
  endforeach()
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${scripts}/postinst ${scripts}/prerm)
endif()
kestrel_package(programs NAME kestrel SECTION graphics
  DEPENDS "libkestrel2-data (= ${PROJECT_VERSION})"
  SUMMARY "image editor and image browser"
  TEXT "kestrel-editor opens, edits and saves pictures, kestrel-browser shows the
pictures of a folder, and kestrel-info prints the properties of picture files.")
# The texts of standard buttons and file dialogs in the user's language.
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS qt6-translations-l10n)

# Programs that link the libraries need the package of the same version; the system's loader must know the new files.
set(control ${CMAKE_CURRENT_BINARY_DIR}/debian)
file(CONFIGURE OUTPUT ${control}/shlibs CONTENT "\
libkestrel ${PROJECT_VERSION_MAJOR} libkestrel2 (= ${PROJECT_VERSION})
libkestrel_engine ${PROJECT_VERSION_MAJOR} libkestrel2 (= ${PROJECT_VERSION})
libkestrel_widgets ${PROJECT_VERSION_MAJOR} libkestrel2 (= ${PROJECT_VERSION})
")
file(CONFIGURE OUTPUT ${control}/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${control}/shlibs ${control}/triggers)

include(CPack)
