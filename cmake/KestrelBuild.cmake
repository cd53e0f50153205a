# Compiler settings that every target of the project shares.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE ccache)
if(CCACHE)
  # Precompiled headers need the laxity; the compiler itself notices when one does not fit.
  # Wherever the sources lie, what was compiled once is known again, but for precompiled headers.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
    ${CCACHE})
endif()

add_library(kestrel_flags INTERFACE)
# No contraction: register scaling is done operation by operation in single precision.
target_compile_options(kestrel_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
  -Wold-style-cast -Woverloaded-virtual -Werror -ffp-contract=off)

# A program does not tell when it was linked: two builds of the same sources are the same.
if(WIN32)
  add_link_options(-Wl,--no-insert-timestamp)
endif()

set(KESTREL_SANITIZE "" CACHE STRING "Sanitizers: \"address,undefined\" or \"thread\"")
if(KESTREL_SANITIZE)
  # Of the tests themselves only the memory is watched, which takes much less time to compile.
  string(REPLACE "," ";" sanitizers ${KESTREL_SANITIZE})
  foreach(sanitizer ${sanitizers})
    set(option -fsanitize=${sanitizer})
    if(sanitizer STREQUAL "undefined")
      set(option $<$<NOT:$<BOOL:$<TARGET_PROPERTY:KESTREL_TEST>>>:${option}>)
    endif()
    target_compile_options(kestrel_flags INTERFACE ${option})
  endforeach()
  target_compile_options(kestrel_flags INTERFACE
    -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kestrel_flags INTERFACE -fsanitize=${KESTREL_SANITIZE})
endif()

option(KESTREL_COVERAGE "Count the lines and branches that are run" OFF)
if(KESTREL_COVERAGE)
  # Counts of several threads at once would get lost, or below zero.
  target_compile_options(kestrel_flags INTERFACE --coverage -fprofile-update=atomic)
  add_link_options(--coverage)
else()
  # Debugging notes do not tell where a program was compiled; counts of coverage must.
  add_compile_options(-fdebug-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()

option(KESTREL_FUZZ "Build the fuzz targets and nothing else; needs clang" OFF)
if(KESTREL_FUZZ)
  # Into the folders' code too; the targets add the fuzzer itself. Optimised: the more inputs, the
  # better.
  target_compile_options(kestrel_flags INTERFACE -O2 -fsanitize=fuzzer-no-link)
endif()

# The folders of the logic, lowest first.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/folders.txt KESTREL_FOLDERS REGEX "^[a-z]")

# kestrel_folder(NAME [SOURCES sources...] [LINKS libraries...]): one static library for one folder of
# src, of every source in it unless some are named; one without sources is a folder of headers.
function(kestrel_folder name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  if(NOT ARG_SOURCES)
    file(GLOB ARG_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    list(FILTER ARG_SOURCES EXCLUDE REGEX "/main\\.cpp$")
  endif()
  if(NOT ARG_SOURCES)
    add_library(kestrel_${name} INTERFACE)
    target_include_directories(kestrel_${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(kestrel_${name} INTERFACE ${ARG_LINKS})
    return()
  endif()
  add_library(kestrel_${name} STATIC ${ARG_SOURCES})
  if(NOT WIN32 AND NOT name MATCHES "^ui_")
    # The Python module is a shared object of these libraries. Nobody replaces their functions in
    # it, so the compiler may inline them as it does elsewhere.
    set_target_properties(kestrel_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_compile_options(kestrel_${name} PRIVATE -fno-semantic-interposition)
  endif()
  target_include_directories(kestrel_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(kestrel_${name} PUBLIC ${ARG_LINKS} PRIVATE kestrel_flags)
  if(KESTREL_SANITIZE)
    target_link_options(kestrel_${name} PUBLIC -fsanitize=${KESTREL_SANITIZE})
  endif()
endfunction()

# kestrel_discover(TARGET FILTER tests [LABEL part] [PROPERTIES ...]): each test of a program by itself.
# Under the sanitizers a program takes longer to start than most of its tests do: there all run
# together, and a label tells those with windows.
function(kestrel_discover target)
  cmake_parse_arguments(ARG "" "FILTER;LABEL" "PROPERTIES" ${ARGN})
  if(KESTREL_SANITIZE)
    add_test(NAME ${target} COMMAND ${target} --gtest_brief=1 "--gtest_filter=${ARG_FILTER}")
    set_tests_properties(${target} PROPERTIES TIMEOUT 1200 LABELS "${ARG_LABEL}" ${ARG_PROPERTIES})
  elseif(ARG_PROPERTIES)
    gtest_discover_tests(${target} TEST_FILTER "${ARG_FILTER}" PROPERTIES ${ARG_PROPERTIES})
  else()
    gtest_discover_tests(${target} TEST_FILTER "${ARG_FILTER}")
  endif()
endfunction()

# kestrel_tests(NAME [SERVER] LINKS libraries...): one test program of every *_test.cpp in the folder. Most
# of the time it takes to compile a test is the framework's headers, which are compiled once for all
# folders. With SERVER the tests whose names hold "OnAServer" run together beside a database server.
function(kestrel_tests name)
  cmake_parse_arguments(ARG "SERVER" "" "SOURCES;LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp)
  add_executable(test_${name} ${sources} ${ARG_SOURCES})
  target_link_libraries(test_${name} PRIVATE ${ARG_LINKS} kestrel_test_support GTest::gmock_main)
  target_precompile_headers(test_${name} REUSE_FROM kestrel_test_headers)
  if(NOT ARG_SERVER)
    kestrel_discover(test_${name} FILTER "*")
    return()
  endif()
  kestrel_discover(test_${name} FILTER "-*OnAServer*")
  add_test(NAME ${name}.OnAServer
    COMMAND ${PROJECT_SOURCE_DIR}/tests/support/temporary_postgres
            $<TARGET_FILE:test_${name}> --gtest_filter=*OnAServer* --gtest_brief=1)
endfunction()

option(KESTREL_ROOMS_AT_ONCE "Compile several files of a room of windows at once" OFF)

# kestrel_room(NAME [APART] [LINKS libraries...]): one room of src/ui. The toolkit's headers take most of
# its compiling: several files compile at once where that is wanted, unless they must stay APART for their
# names; under the sanitizers a precompiled header saves a third. Every other build proves that each file
# includes what it needs.
function(kestrel_room name)
  cmake_parse_arguments(ARG "APART" "" "" ${ARGN})
  kestrel_folder(ui_${name} ${ARG_UNPARSED_ARGUMENTS})
  if(KESTREL_SANITIZE)
    target_precompile_headers(kestrel_ui_${name} PRIVATE <QtWidgets>)
  elseif(KESTREL_ROOMS_AT_ONCE AND NOT ARG_APART)
    set_target_properties(kestrel_ui_${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()
