# The files of the libraries for hosts, in the components that become packages: `libraries` and `data` to run hosts,
# `development` to build them.
include(CMakePackageConfigHelpers)

# kestrel_compress(FILE RESULT): the file compressed as Debian wants its documents, without its name and time.
function(kestrel_compress file result)
  get_filename_component(name ${file} NAME)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz)
  configure_file(${file} ${CMAKE_CURRENT_BINARY_DIR}/${name} COPYONLY)
  execute_process(COMMAND gzip -9nc ${CMAKE_CURRENT_BINARY_DIR}/${name} OUTPUT_FILE ${compressed}
    COMMAND_ERROR_IS_FATAL ANY)
  set(${result} ${compressed} PARENT_SCOPE)
endfunction()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KestrelLib2)

# A set of targets each: a host of the engine alone does not need the toolkit.
set(names Engine Widgets)
if(KESTREL_C)
  list(APPEND names C)
  install(FILES ${PROJECT_SOURCE_DIR}/bindings/c/kestrel.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
endif()
foreach(name IN LISTS names)
  string(TOLOWER ${name} lower)
  install(TARGETS kestrel_${lower}_library EXPORT KestrelLib2${name}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT libraries NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install(EXPORT KestrelLib2${name} NAMESPACE Kestrel:: DESTINATION ${package_dir} COMPONENT development)
endforeach()
install(DIRECTORY ${KESTREL_PACKAGE_DIR}/share/kestrellib2 DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT data)
install(DIRECTORY ${KESTREL_PUBLIC_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
# What the build writes of the public interface.
install(FILES ${PROJECT_BINARY_DIR}/generated/interface/reference.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/KestrelLib2 COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/generated/interface/kestrel_constants.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# A shared library links what it uses itself; hosts with static ones link it too.
set(STATIC_COMPONENTS)
set(STATIC_DEPENDENCIES)
set(STATIC_C)
set(PRIVATE_LIBS)
set(PRIVATE_REQUIRES)
set(C_REQUIRES)
if(NOT KESTREL_SHARED)
  set(STATIC_COMPONENTS " Svg")
  set(STATIC_DEPENDENCIES "find_dependency(Threads)")
  set(STATIC_C "list(APPEND KestrelLib2_FIND_COMPONENTS Widgets)")
  set(PRIVATE_REQUIRES "Qt6Svg")
  set(C_REQUIRES "kestrel-widgets")
  get_target_property(names kestrel_engine_library INTERFACE_LINK_LIBRARIES)
  list(FILTER names EXCLUDE REGEX "::")
  list(JOIN names " -l" PRIVATE_LIBS)
  string(PREPEND PRIVATE_LIBS "-pthread -l")
endif()

if(KESTREL_DESIGNER)
  install(TARGETS kestrel_designer_plugin LIBRARY DESTINATION ${KESTREL_DESIGNER_FOLDER} COMPONENT development)
endif()

configure_package_config_file(KestrelLib2Config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/KestrelLib2Config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/KestrelLib2ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/KestrelLib2Config.cmake ${CMAKE_CURRENT_BINARY_DIR}/KestrelLib2ConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

file(RELATIVE_PATH PREFIX_OF_PKGCONFIG /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" PREFIX_OF_PKGCONFIG ${PREFIX_OF_PKGCONFIG})
set(modules kestrel-engine kestrel-widgets)
if(KESTREL_C)
  list(APPEND modules kestrel)
endif()
foreach(module IN LISTS modules)
  configure_file(${module}.pc.in ${module}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${module}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()
