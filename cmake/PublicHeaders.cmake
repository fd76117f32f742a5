# Writes the headers for hosts: cmake -D SOURCE=... -D TARGET=... -D HEADERS=... -D FACES=... -P PublicHeaders.cmake
#
# HEADERS are paths from the root SOURCE. They and the headers that they include, directly or indirectly, are copied to
# the folder TARGET, which hosts include under the name kestrel: an include of one of our headers becomes
# <kestrel/PATH>, so that a folder of a host with the name of one of ours does not collide. FACES are rows NAME=PATH:
# TARGET/NAME includes the header PATH. TARGET.list has the paths of the headers, TARGET.d is the dependency file of TARGET.list.
# Headers that are no longer included by others are removed.
cmake_minimum_required(VERSION 3.25)

# The path from the root of what `header` includes as `name`: next to it, or from the root.
function(kestrel_included_path header name result)
  cmake_path(GET header PARENT_PATH folder)
  cmake_path(APPEND folder ${name} OUTPUT_VARIABLE near)
  cmake_path(NORMAL_PATH near)
  if(EXISTS ${SOURCE}/${near})
    set(${result} ${near} PARENT_SCOPE)
  elseif(EXISTS ${SOURCE}/${name})
    set(${result} ${name} PARENT_SCOPE)
  else()
    message(FATAL_ERROR "${header} includes \"${name}\", which is no header of the project.")
  endif()
endfunction()

# A file keeps its time if its content is the same, so that hosts are not compiled again.
function(kestrel_write_changed file content)
  if(EXISTS ${file})
    file(READ ${file} present)
  endif()
  if(NOT EXISTS ${file} OR NOT present STREQUAL content)
    file(WRITE ${file} "${content}")
  endif()
endfunction()

set(queue ${HEADERS})
set(written)
while(queue)
  list(POP_FRONT queue header)
  if(header IN_LIST written)
    continue()
  endif()
  list(APPEND written ${header})
  file(READ ${SOURCE}/${header} content)
  string(REGEX MATCHALL "#include \"[^\"\n]+\"" includes "${content}")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE "#include \"(.*)\"" "\\1" name "${include}")
    kestrel_included_path(${header} ${name} path)
    string(REPLACE "${include}" "#include <kestrel/${path}>" content "${content}")
    list(APPEND queue ${path})
  endforeach()
  kestrel_write_changed(${TARGET}/${header} "${content}")
endwhile()

set(expected ${written})
foreach(face IN LISTS FACES)
  string(REGEX MATCH "^(.*)=(.*)$" face "${face}")
  list(APPEND expected ${CMAKE_MATCH_1})
  kestrel_write_changed(${TARGET}/${CMAKE_MATCH_1} "#pragma once\n\n#include <kestrel/${CMAKE_MATCH_2}>\n")
endforeach()
file(GLOB_RECURSE present RELATIVE ${TARGET} ${TARGET}/*)
foreach(file IN LISTS present)
  if(NOT file IN_LIST expected)
    file(REMOVE ${TARGET}/${file})
  endif()
endforeach()

list(SORT written)
string(REPLACE ";" "\n" list "${written}")
file(WRITE ${TARGET}.list "${list}\n")
list(TRANSFORM written PREPEND "${SOURCE}/")
string(REPLACE ";" " " dependencies "${written}")
file(WRITE ${TARGET}.d "${TARGET}.list: ${dependencies}\n")
