# kestrel_bind_help_book(PROGRAM TARGET): puts the help book next to the program, so that installing or copying includes
# it: the pages, their icons and pictures. The target's property BOOK is its folder.
function(kestrel_bind_help_book program target)
  set(pages ${PROJECT_SOURCE_DIR}/Resources/help/BrindleImgPro)
  set(icons ${PROJECT_SOURCE_DIR}/Resources/icons)
  set(pictures ${PROJECT_SOURCE_DIR}/docs/images)
  file(GLOB files CONFIGURE_DEPENDS ${pages}/* ${icons}/* ${pictures}/*)
  set(book ${CMAKE_CURRENT_BINARY_DIR}/help/BrindleImgPro)
  set(stamp ${CMAKE_CURRENT_BINARY_DIR}/help-book.stamp)
  add_custom_command(
    OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${book}
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${pages} ${book}
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${icons} ${book}/icons
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${pictures} ${book}/images
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS ${files}
    COMMENT "Binding the help book of ${program}"
    VERBATIM)
  add_custom_target(${target} DEPENDS ${stamp})
  set_target_properties(${target} PROPERTIES BOOK ${book})
  add_dependencies(${program} ${target})
endfunction()
