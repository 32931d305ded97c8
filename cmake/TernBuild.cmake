# Compiler settings and the few functions by which each folder declares what it is.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(TERN_GENERATED_DIR "${CMAKE_BINARY_DIR}/gen")
file(MAKE_DIRECTORY "${TERN_GENERATED_DIR}")

set(TERN_SANITIZE "" CACHE STRING "Sanitizers to build with, for instance address,undefined")
option(TERN_COVERAGE "Instrument for coverage" OFF)
option(TERN_BENCH "Build the benchmarks" OFF)
option(TERN_TOGETHER "Compile the large targets' sources a dozen at a time: for builds from nothing, not for daily work" OFF)
option(TERN_LIBFUZZER "Build the fuzz entries for libFuzzer (clang only)" OFF)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

# The model's objects hold addresses of each other: without position independence they are plain
# constant words, with it every one of them is a relocation at start.
set(CMAKE_POSITION_INDEPENDENT_CODE OFF)
add_compile_options(-fno-pie)
add_link_options(-no-pie)

# Where a word has 32 bits, files and the places in a folder still have 64: without it a folder of some file systems
# cannot be read.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_definitions(_FILE_OFFSET_BITS=64)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wformat=2 -Wshadow -Wconversion
                    -Wno-sign-conversion -Wundef $<$<COMPILE_LANGUAGE:CXX>:-Wsuggest-override>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Model classes have no virtual destructor; where a test or a benchmark keeps some in a container, they are destroyed
  # as what they are.
  add_compile_options(-Wno-unknown-warning-option -Wno-delete-non-abstract-non-virtual-dtor)
endif()

if(TERN_SANITIZE)
  add_compile_options(-fsanitize=${TERN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TERN_SANITIZE})
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^arm")
    # What an exception destroys on its way is marked as out of scope, and on ARM the compiler does not take the marks
    # away when the exception leaves the function: a later function finds them on its own stack.
    add_compile_options(-fno-sanitize-address-use-after-scope)
  endif()
endif()
if(TERN_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

# tern_floor(NAME [SOURCES globs...] [LINK targets...] [INCLUDE dirs...])
# A static library made of every source that the globs name; a new file is picked up by itself.
# Includes are written from the root of the repository ("apps/common/log/log.h").
function(tern_floor name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK;INCLUDE" ${ARGN})
  if(NOT arg_SOURCES)
    set(arg_SOURCES "*.cpp")
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${arg_SOURCES})
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}" ${arg_INCLUDE})
    target_link_libraries(${name} PUBLIC ${arg_LINK})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${PROJECT_SOURCE_DIR}" ${arg_INCLUDE})
    target_link_libraries(${name} INTERFACE ${arg_LINK})
  endif()
endfunction()

# tern_together(TARGET [ALONE sources...]): a target with many sources is worth compiling a dozen at a time. Those that
# would not bear their neighbours' internal names stand alone. The build file by file minds the shadows.
function(tern_together target)
  cmake_parse_arguments(arg "" "" "ALONE" ${ARGN})
  if(TERN_TOGETHER)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
    target_compile_options(${target} PRIVATE -Wno-shadow $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
    set_source_files_properties(${arg_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
endfunction()

# tern_command_line(SOURCES...): what reads a command line. The library for that is templates throughout: to optimize
# them takes two to three times as long and gains nothing.
function(tern_command_line)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -O0)
endfunction()

# tern_program(NAME SOURCES sources... LINK targets... PLATFORM linux|virtual)
# A program over one of the platform twins. The twin is linked whole, since floors of any height call it.
function(tern_program name)
  cmake_parse_arguments(arg "" "PLATFORM" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${arg_LINK} $<LINK_LIBRARY:WHOLE_ARCHIVE,platform-${arg_PLATFORM}>)
endfunction()

# tern_test(NAME [SOURCES globs...] [LINK targets...])
# One GoogleTest program NAME-tests from the *.cpp of the calling folder, found by ctest as a whole.
function(tern_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  if(NOT arg_SOURCES)
    set(arg_SOURCES "*.cpp")
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${arg_SOURCES})
  if(NOT sources)
    return()
  endif()
  add_executable(${name}-tests ${sources})
  target_include_directories(${name}-tests PRIVATE "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
  target_compile_definitions(${name}-tests PRIVATE TERN_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                                   TERN_BINARY_DIR="${CMAKE_BINARY_DIR}")
  target_compile_options(${name}-tests PRIVATE $<$<CONFIG:Release>:-Og>)  # what it tests is optimized, it need not be
  if(CMAKE_CROSSCOMPILING)
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR "\",\"" emulator)  # goes before a program that a test starts
    target_compile_definitions(${name}-tests PRIVATE "TERN_EMULATOR=\"${emulator}\"")
    if(TERN_SANITIZE)
      target_sources(${name}-tests PRIVATE "${PROJECT_SOURCE_DIR}/tests/support/kerneladdresses.cc")
    endif()
  endif()
  target_link_libraries(${name}-tests PRIVATE ${arg_LINK} GTest::gmock GTest::gtest_main)
  add_test(NAME ${name} COMMAND ${name}-tests WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()

# tern_bench(NAME [LINK targets...]): a Google Benchmark program from bench/NAME.cpp.
function(tern_bench name)
  cmake_parse_arguments(arg "" "" "LINK" ${ARGN})
  add_executable(bench-${name} ${name}.cpp)
  target_include_directories(bench-${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_definitions(bench-${name} PRIVATE TERN_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  target_link_libraries(bench-${name} PRIVATE ${arg_LINK} benchmark::benchmark)
endfunction()

# tern_fuzz(NAME [LINK targets...]): the entry fuzz/NAME.cpp. With TERN_LIBFUZZER it is a libFuzzer
# program; otherwise it is driven over its corpus and a fixed number of seeded random inputs, as a test.
function(tern_fuzz name)
  cmake_parse_arguments(arg "" "" "LINK" ${ARGN})
  add_executable(fuzz-${name} ${name}.cpp)
  target_include_directories(fuzz-${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(fuzz-${name} PRIVATE ${arg_LINK})
  if(TERN_LIBFUZZER)
    target_compile_options(fuzz-${name} PRIVATE -fsanitize=fuzzer)
    target_link_options(fuzz-${name} PRIVATE -fsanitize=fuzzer)
  else()
    target_sources(fuzz-${name} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/driver.cc")
    add_test(NAME fuzz-${name} COMMAND fuzz-${name} "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name}")
    set_tests_properties(fuzz-${name} PROPERTIES TIMEOUT 120)
  endif()
endfunction()
