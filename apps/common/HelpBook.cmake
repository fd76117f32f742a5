# kestrel_bind_help_book(PROGRAM TARGET [CONTENTS]): puts the help book next to the program, so that installing or copying
# includes it: the pages, their icons and pictures. The page CONTENTS takes the place of the editor's contents,
# default.html, which are then the page editor.html. The target's property BOOK is its folder.
function(kestrel_bind_help_book program target)
  set(pages ${PROJECT_SOURCE_DIR}/Resources/help/BrindleImgPro)
  set(icons ${PROJECT_SOURCE_DIR}/Resources/icons)
  set(pictures ${PROJECT_SOURCE_DIR}/docs/images)
  file(GLOB files CONFIGURE_DEPENDS ${pages}/* ${icons}/* ${pictures}/*)
  set(book ${CMAKE_CURRENT_BINARY_DIR}/help/BrindleImgPro)
  set(own_contents)
  if(ARGC GREATER 2)
    set(own_contents
      COMMAND ${CMAKE_COMMAND} -E rename ${book}/default.html ${book}/editor.html
      COMMAND ${CMAKE_COMMAND} -E copy ${ARGV2} ${book}/default.html)
    list(APPEND files ${ARGV2})
  endif()
  set(stamp ${CMAKE_CURRENT_BINARY_DIR}/help-book.stamp)
  add_custom_command(
    OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${book}
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${pages} ${book}
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${icons} ${book}/icons
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${pictures} ${book}/images
    ${own_contents}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS ${files}
    COMMENT "Binding the help book of ${program}"
    VERBATIM)
  add_custom_target(${target} DEPENDS ${stamp})
  set_target_properties(${target} PROPERTIES BOOK ${book})
  add_dependencies(${program} ${target})
endfunction()
