# Settings of all targets: the language, the warnings, and the rule that a folder sees only the folders it
# depends on.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# What the toolkit's compilers read is not generated, so they need not wait for the libraries that a target links.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)

option(KESTREL_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(KESTREL_COVERAGE "Count executed lines (needs clang); scripts/fuzz-coverage prints them" OFF)
set(KESTREL_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread")

add_library(kestrel_options INTERFACE)
# Line tables stay in release builds: an error report names the source line.
target_compile_options(kestrel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -g1)
if(KESTREL_WERROR)
  target_compile_options(kestrel_options INTERFACE -Werror)
endif()
# Equal statements must not be merged, else a report could name the line of another one.
target_compile_options(kestrel_options INTERFACE
  $<$<CXX_COMPILER_ID:GNU>:-fno-crossjumping>
  $<$<CXX_COMPILER_ID:GNU>:-fno-tree-tail-merge>)
if(KESTREL_SANITIZE)
  target_compile_options(kestrel_options INTERFACE
    -fsanitize=${KESTREL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(kestrel_options INTERFACE -fsanitize=${KESTREL_SANITIZE})
endif()
if(KESTREL_COVERAGE)
  target_compile_options(kestrel_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(kestrel_options INTERFACE -fprofile-instr-generate)
  # Of code for several vector targets, clang maps the functions of one target alone to lines: build only that.
  target_compile_definitions(kestrel_options INTERFACE HWY_COMPILE_ONLY_STATIC)
endif()
if(KESTREL_FUZZ)
  # The fuzzer is guided by coverage, so all tested code is instrumented.
  target_compile_options(kestrel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

option(KESTREL_FORWARDING_HEADERS "Expose folders by generated headers, as where there are no symbolic links" OFF)

# Gives `target` an include directory that contains only its source folder, under the path from the root.
# Including a folder that is not among the dependencies therefore does not compile.
function(kestrel_expose target scope)
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  set(root ${PROJECT_BINARY_DIR}/include/${target})
  # Remove the link of a moved folder: otherwise a new link could be created inside it.
  file(REMOVE_RECURSE ${root})
  get_filename_component(parent ${root}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  if(NOT KESTREL_FORWARDING_HEADERS)
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${folder} RESULT result SYMBOLIC)
  endif()
  if(KESTREL_FORWARDING_HEADERS OR result)
    kestrel_forward_headers(${root}/${folder})
  endif()
  target_include_directories(${target} ${scope} ${root})
endfunction()

# For each file that may be included, a file of the same name under `root` that includes it.
function(kestrel_forward_headers root)
  file(GLOB_RECURSE files RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS
    ${CMAKE_CURRENT_SOURCE_DIR}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  foreach(file IN LISTS files)
    file(CONFIGURE OUTPUT ${root}/${file} CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${file}\"\n")
  endforeach()
endfunction()

# kestrel_library(name [SOURCES file...] [DEPENDS target...] [PRIVATE target...])
# One folder, one target. DEPENDS are the folders whose headers this folder's headers name;
# PRIVATE are those that only its sources use. Without SOURCES it is a folder of headers.
function(kestrel_library target)
  cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS;PRIVATE" ${ARGN})
  if(arg_SOURCES)
    add_library(${target} STATIC ${arg_SOURCES})
    kestrel_expose(${target} PUBLIC)
    target_link_libraries(${target} PUBLIC ${arg_DEPENDS} PRIVATE ${arg_PRIVATE} kestrel_options)
  else()
    add_library(${target} INTERFACE)
    kestrel_expose(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE ${arg_DEPENDS})
  endif()
endfunction()

# kestrel_tests(LABEL target...): what the tests of a label run, as one target to build, kestrel_tests_LABEL.
function(kestrel_tests label)
  if(NOT TARGET kestrel_tests_${label})
    add_custom_target(kestrel_tests_${label})
  endif()
  add_dependencies(kestrel_tests_${label} ${ARGN})
endfunction()

# kestrel_test(name LABEL folder [THREADS] SOURCES file... [DEPENDS target...])
# One GoogleTest program, run by CTest as one test under the folder's label. THREADS: its subject uses several
# threads, so it runs under the thread sanitizer too.
function(kestrel_test target)
  cmake_parse_arguments(arg "THREADS" "LABEL" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${target} ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE
    ${arg_DEPENDS} kestrel_vector_target GTest::gtest GTest::gmock GTest::gtest_main kestrel_options)
  if(KESTREL_SANITIZE)
    # Halves the time to compile them; what they test stays optimised.
    target_compile_options(${target} PRIVATE -O0)
  endif()
  add_test(NAME ${target} COMMAND ${target})

  set(labels ${arg_LABEL})
  if(arg_THREADS)
    list(APPEND labels threads)
  endif()
  set_tests_properties(${target} PROPERTIES LABELS "${labels}" TIMEOUT 600)
  foreach(label IN LISTS labels)
    kestrel_tests(${label} ${target})
  endforeach()
endfunction()

# kestrel_fuzzer(name CORPUS folder SOURCES file... [DEPENDS target...] [DEFINITIONS definition...] [LONGEST bytes])
# One libFuzzer program, fuzz_NAME, whose source has LLVMFuzzerTestOneInput, and its short run from the kept
# inputs as a test; scripts/fuzz starts them. Requires KESTREL_FUZZ. New inputs are written to
# found/NAME of the build folder, failing inputs to files with the prefix found/NAME-.
set(KESTREL_FUZZ_SECONDS 20 CACHE STRING "How long each fuzz target runs as a test")
function(kestrel_fuzzer name)
  cmake_parse_arguments(arg "" "CORPUS;LONGEST" "SOURCES;DEPENDS;DEFINITIONS" ${ARGN})
  set(target fuzz_${name})
  add_executable(${target} ${arg_SOURCES})
  target_compile_definitions(${target} PRIVATE ${arg_DEFINITIONS})
  target_link_libraries(${target} PRIVATE ${arg_DEPENDS} kestrel_options)
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  if(NOT TARGET kestrel_fuzzers)
    add_custom_target(kestrel_fuzzers)
  endif()
  add_dependencies(kestrel_fuzzers ${target})

  if(NOT arg_LONGEST)
    set(arg_LONGEST 8192)
  endif()
  set(found ${PROJECT_BINARY_DIR}/found)
  file(MAKE_DIRECTORY ${found}/${name} ${arg_CORPUS})
  add_test(NAME ${target} COMMAND ${target}
    -max_total_time=${KESTREL_FUZZ_SECONDS} -max_len=${arg_LONGEST} -timeout=60 -rss_limit_mb=3000
    -print_final_stats=1 -artifact_prefix=${found}/${name}- ${found}/${name} ${arg_CORPUS})
  math(EXPR limit "${KESTREL_FUZZ_SECONDS} + 120")
  set_tests_properties(${target} PROPERTIES LABELS fuzz TIMEOUT ${limit})
endfunction()
