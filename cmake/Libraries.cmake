# The libraries for hosts, composed of the objects of the folders' targets, so that nothing is compiled twice.

# kestrel_parts(PARTS variable LINKS variable ROOTS target...)
# PARTS: the static libraries of the project among `ROOTS` and what they link, directly or indirectly. LINKS: what these
# link of others.
function(kestrel_parts)
  cmake_parse_arguments(arg "" "PARTS;LINKS" "ROOTS" ${ARGN})
  set(queue ${arg_ROOTS})
  set(seen kestrel_options)
  set(parts)
  set(links)
  while(queue)
    list(POP_FRONT queue target)
    if(target IN_LIST seen)
      continue()
    endif()
    list(APPEND seen ${target})
    if(NOT target MATCHES "^kestrel_")
      list(APPEND links ${target})
      continue()
    endif()
    get_target_property(type ${target} TYPE)
    set(linked)
    if(type STREQUAL STATIC_LIBRARY)
      list(APPEND parts ${target})
      get_target_property(linked ${target} LINK_LIBRARIES)
    else()
      get_target_property(linked ${target} INTERFACE_LINK_LIBRARIES)
    endif()
    # Outside their folder the names have a suffix with its scope.
    list(FILTER linked EXCLUDE REGEX "^::@")
    list(APPEND queue ${linked})
  endwhile()
  set(${arg_PARTS} ${parts} PARENT_SCOPE)
  set(${arg_LINKS} ${links} PARENT_SCOPE)
endfunction()

# The names by which a linker finds the libraries of imported targets: for static libraries, whose users link them too.
# The toolkit and the threads stay targets, which users find as this project does.
function(kestrel_link_names targets result)
  set(names)
  foreach(target IN LISTS targets)
    if(target MATCHES "^(Qt6|Threads)::")
      list(APPEND names ${target})
      continue()
    endif()
    set(files ${target})
    if(TARGET ${target})
      get_target_property(files ${target} INTERFACE_LINK_LIBRARIES)
      get_target_property(type ${target} TYPE)
      if(NOT type STREQUAL INTERFACE_LIBRARY)
        get_target_property(files ${target} LOCATION)
      endif()
    endif()
    foreach(file IN LISTS files)
      get_filename_component(name ${file} NAME)
      string(REGEX REPLACE "^(-l|lib)?([^.]+)(\\..*)?$" "\\2" name "${name}")
      list(APPEND names ${name})
    endforeach()
  endforeach()
  list(REMOVE_DUPLICATES names)
  set(${result} ${names} PARENT_SCOPE)
endfunction()

# kestrel_host_library(NAME PARTS target... LINKS target... USES target... INTERFACE target... NEEDED_BY target...
#                      FOLDERS expression)
# The library that hosts link as Kestrel::NAME, of the objects of PARTS. LINKS are libraries that only it uses, USES
# other libraries for hosts; INTERFACE are those whose headers its headers include. A shared library exports what the
# public headers declare whose path matches FOLDERS, and what the targets NEEDED_BY, parts of other libraries for hosts,
# use of it. Where that is shared, tests have the static one as well, kestrel_NAME_static, of the same objects.
function(kestrel_host_library name)
  cmake_parse_arguments(arg "" "FOLDERS" "PARTS;LINKS;USES;INTERFACE;NEEDED_BY" ${ARGN})
  string(TOLOWER ${name} lower)
  set(target kestrel_${lower}_library)
  list(TRANSFORM arg_PARTS REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
  if(KESTREL_SHARED)
    add_library(${target} SHARED ${objects})
    kestrel_export_map(${target} ${lower} "${arg_FOLDERS}" "${arg_NEEDED_BY}")
    target_link_libraries(${target} PRIVATE ${arg_LINKS} kestrel_options)
    target_link_options(${target} PRIVATE -Wl,-z,defs -Wl,-Bsymbolic-functions)
  else()
    kestrel_static_library(${target} "${objects}" "${arg_LINKS}")
  endif()
  kestrel_use_in_hosts(${target} ${arg_USES} ${arg_INTERFACE})
  add_library(Kestrel::${name} ALIAS ${target})
  kestrel_place_library(${target} ${name} kestrel_${lower})
  if(KESTREL_SHARED AND KESTREL_TESTS)
    kestrel_static_library(kestrel_${lower}_static "${objects}" "${arg_LINKS}")
    list(TRANSFORM arg_USES REPLACE "_library$" "_static" OUTPUT_VARIABLE uses)
    kestrel_use_in_hosts(kestrel_${lower}_static ${uses} ${arg_INTERFACE})
    set_target_properties(kestrel_${lower}_static PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
endfunction()

# How a library for hosts is named for CMake and for the linker, and where the build has it.
function(kestrel_place_library target name file)
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    OUTPUT_NAME ${file}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH "$ORIGIN"
    LIBRARY_OUTPUT_DIRECTORY ${KESTREL_PACKAGE_DIR}/${CMAKE_INSTALL_LIBDIR}
    ARCHIVE_OUTPUT_DIRECTORY ${KESTREL_PACKAGE_DIR}/${CMAKE_INSTALL_LIBDIR})
endfunction()

# A library of the objects whose users link the other libraries too.
function(kestrel_static_library target objects links)
  add_library(${target} STATIC ${objects})
  kestrel_link_names("${links}" names)
  target_link_libraries(${target} INTERFACE ${names})
endfunction()

# kestrel_use_in_hosts(TARGET target...): what hosts get with the library.
function(kestrel_use_in_hosts target)
  add_dependencies(${target} kestrel_public_headers)
  target_link_libraries(${target} PUBLIC ${ARGN})
  target_compile_features(${target} INTERFACE cxx_std_20)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${KESTREL_PACKAGE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
endfunction()

function(kestrel_use_map target map)
  target_sources(${target} PRIVATE ${map})
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${map})
endfunction()

function(kestrel_export_map target lower folders needed_by)
  set(map ${KESTREL_PACKAGE_DIR}/${lower}.map)
  set(script ${PROJECT_SOURCE_DIR}/cmake/ExportMap.cmake)
  list(TRANSFORM needed_by REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE archives)
  add_custom_command(
    OUTPUT ${map}
    COMMAND ${CMAKE_COMMAND} -D MAP=${map} -D HEADERS=${KESTREL_PUBLIC_HEADERS} -D LIST=${KESTREL_PUBLIC_HEADERS}.list
      -D FOLDERS=${folders} -D NM=${CMAKE_NM} -D "NEEDED_BY=${archives}" -P ${script}
    DEPENDS ${script} ${KESTREL_PUBLIC_HEADERS}.list ${needed_by}
    COMMENT "Listing the exports of kestrel_${lower}"
    VERBATIM)
  kestrel_use_map(${target} ${map})
endfunction()

# kestrel_write_headers(HEADERS path... FACES name=path...)
# The target kestrel_public_headers, which writes the headers for hosts; see PublicHeaders.cmake.
function(kestrel_write_headers)
  cmake_parse_arguments(arg "" "" "HEADERS;FACES" ${ARGN})
  set(script ${PROJECT_SOURCE_DIR}/cmake/PublicHeaders.cmake)
  set(list ${KESTREL_PUBLIC_HEADERS}.list)
  add_custom_command(
    OUTPUT ${list}
    COMMAND ${CMAKE_COMMAND} -D SOURCE=${PROJECT_SOURCE_DIR} -D TARGET=${KESTREL_PUBLIC_HEADERS}
      -D "HEADERS=${arg_HEADERS}" -D "FACES=${arg_FACES}" -P ${script}
    DEPENDS ${script}
    DEPFILE ${KESTREL_PUBLIC_HEADERS}.d
    COMMENT "Writing the headers for hosts"
    VERBATIM)
  add_custom_target(kestrel_public_headers DEPENDS ${list})
endfunction()

# kestrel_c_host_library(PARTS target... USES target... LINKS target... HEADER file)
# The library that hosts in C link as Kestrel::C, of the objects of PARTS. It exports the functions of HEADER. USES and
# LINKS are its own matter: its hosts need neither the toolkit nor C++.
function(kestrel_c_host_library)
  cmake_parse_arguments(arg "" "HEADER" "PARTS;USES;LINKS" ${ARGN})
  set(target kestrel_c_library)
  list(TRANSFORM arg_PARTS REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
  if(KESTREL_SHARED)
    add_library(${target} SHARED ${objects})
    kestrel_c_export_map(${target} ${arg_HEADER})
    target_link_libraries(${target} PRIVATE ${arg_USES} ${arg_LINKS} kestrel_options)
    # Most of LINKS are used by USES only.
    target_link_options(${target} PRIVATE -Wl,-z,defs -Wl,-Bsymbolic-functions -Wl,--as-needed)
  else()
    add_library(${target} STATIC ${objects})
    kestrel_link_names("${arg_LINKS}" names)
    target_link_libraries(${target} PUBLIC ${arg_USES} INTERFACE ${names})
  endif()
  add_library(Kestrel::C ALIAS ${target})
  get_filename_component(name ${arg_HEADER} NAME)
  configure_file(${arg_HEADER} ${KESTREL_PACKAGE_DIR}/include/${name} COPYONLY)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${KESTREL_PACKAGE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  kestrel_place_library(${target} C kestrel)
endfunction()

function(kestrel_c_export_map target header)
  set(map ${KESTREL_PACKAGE_DIR}/c.map)
  set(script ${PROJECT_SOURCE_DIR}/cmake/ExportMap.cmake)
  add_custom_command(
    OUTPUT ${map}
    COMMAND ${CMAKE_COMMAND} -D MAP=${map} -D C_HEADER=${header} -P ${script}
    DEPENDS ${script} ${header}
    COMMENT "Listing the exports of kestrel"
    VERBATIM)
  kestrel_use_map(${target} ${map})
endfunction()
