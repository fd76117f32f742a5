# Writes the linker's list of the symbols that a library exports:
# cmake -D MAP=... -D HEADERS=... -D LIST=... -D FOLDERS=... -D NM=... -D NEEDED_BY=... -P ExportMap.cmake
# cmake -D MAP=... -D C_HEADER=... -P ExportMap.cmake
#
# Exported are the classes and functions of the public headers: those of the file LIST, below the folder HEADERS, whose
# path matches the expression FOLDERS. The archives NEEDED_BY are parts of another library of this project; what they
# lack is exported for them too, without a promise to anybody else. All other symbols are local to the library.
# Of a library for hosts in C the functions of its header alone are exported.
cmake_minimum_required(VERSION 3.25)

function(kestrel_write_map)
  set(map "KESTREL_2 {\n  global:\n")
  foreach(symbol IN LISTS ARGN)
    string(APPEND map "    ${symbol};\n")
  endforeach()
  string(APPEND map "  local:\n    *;\n};\n")
  file(WRITE ${MAP} "${map}")
endfunction()

if(C_HEADER)
  file(READ ${C_HEADER} content)
  string(REGEX MATCHALL "KESTREL_API [a-z0-9_ *]+\\(" functions "${content}")
  list(FILTER functions INCLUDE REGEX "kestrel_[a-z0-9_]+\\($")
  list(TRANSFORM functions REPLACE "^.*[ *](kestrel_[a-z0-9_]+)\\($" "\\1")
  kestrel_write_map(${functions})
  return()
endif()

# The names of a nested name as the C++ ABI of the platform encodes them: 7kestrel2qt for kestrel::qt.
function(kestrel_encode name result)
  string(REPLACE "::" ";" parts "${name}")
  set(encoded)
  foreach(part IN LISTS parts)
    string(LENGTH ${part} length)
    string(APPEND encoded ${length}${part})
  endforeach()
  set(${result} ${encoded} PARENT_SCOPE)
endfunction()

# The namespaces of a header, with those around them.
function(kestrel_namespaces content result)
  set(namespaces)
  string(REGEX MATCHALL "\nnamespace [A-Za-z0-9_:]+ {" lines "${content}")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "\nnamespace (.*) {" "\\1" name "${line}")
    if(NOT name MATCHES "^kestrel")
      string(PREPEND name "kestrel::")
    endif()
    list(APPEND namespaces ${name})
  endforeach()
  list(REMOVE_DUPLICATES namespaces)
  set(${result} ${namespaces} PARENT_SCOPE)
endfunction()

set(patterns)
file(STRINGS ${LIST} headers)
foreach(header IN LISTS headers)
  if(NOT header MATCHES "${FOLDERS}")
    continue()
  endif()
  file(READ ${HEADERS}/${header} content)
  kestrel_namespaces("${content}" namespaces)

  # Top-level declarations begin a line.
  string(REGEX MATCHALL "\n(class|struct) (\\[\\[[a-z]+\\]\\] )?[A-Za-z0-9_]+( final)?[ \n]+[:{]" types "${content}")
  list(TRANSFORM types REPLACE "^\n(class|struct) (\\[\\[[a-z]+\\]\\] )?([A-Za-z0-9_]+).*" "\\3")
  string(REGEX MATCHALL "\n[A-Za-z_][A-Za-z0-9_:<>,&* ]* [&*]*[A-Za-z0-9_]+\\(" functions "${content}")
  list(FILTER functions EXCLUDE REGEX "^\n(inline|constexpr|template|using|typedef) ")
  list(TRANSFORM functions REPLACE "^.*[ &*]([A-Za-z0-9_]+)\\($" "\\1")
  foreach(namespace IN LISTS namespaces)
    kestrel_encode(${namespace} outer)
    foreach(type IN LISTS types)
      kestrel_encode(${type} own)
      list(APPEND patterns _ZN${outer}${own}* _ZNK${outer}${own}* _ZT?N${outer}${own}* _ZT*_N${outer}${own}*)
    endforeach()
    foreach(function IN LISTS functions)
      kestrel_encode(${function} own)
      list(APPEND patterns _ZN${outer}${own}E*)
    endforeach()
  endforeach()
endforeach()

# Symbols of the archives NEEDED_BY; `which` is an option of nm.
function(kestrel_symbols which result)
  set(symbols)
  foreach(archive IN LISTS NEEDED_BY)
    execute_process(COMMAND ${NM} ${which} -P ${archive} OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY
      ERROR_QUIET)
    string(REGEX MATCHALL "(^|\n)_Z[^ \n]*7kestrel[^ \n]*" found "${lines}")
    list(APPEND symbols ${found})
  endforeach()
  list(TRANSFORM symbols STRIP)
  list(REMOVE_DUPLICATES symbols)
  set(${result} ${symbols} PARENT_SCOPE)
endfunction()

kestrel_symbols(--undefined-only needed)
kestrel_symbols(--defined-only own)
list(REMOVE_ITEM needed ${own})

list(REMOVE_DUPLICATES patterns)
list(SORT patterns)
list(SORT needed)
kestrel_write_map(${patterns} ${needed})
