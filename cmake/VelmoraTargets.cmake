# Compile options and the helper functions that every folder's CMakeLists.txt uses.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# The system that this build is for; it picks FooLinux.cpp or FooMac.cpp. Nothing falls back to a
# guess: a system that is neither stops here.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  set(VELMORA_PLATFORM Linux)
elseif(CMAKE_SYSTEM_NAME STREQUAL "Darwin")
  set(VELMORA_PLATFORM Mac)
  enable_language(OBJCXX)
  set(CMAKE_OBJCXX_STANDARD 20)
  set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
  set(CMAKE_OBJCXX_EXTENSIONS OFF)
  add_compile_options($<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
else()
  message(FATAL_ERROR "Velmora has no platform files for ${CMAKE_SYSTEM_NAME}")
endif()

add_library(velmora_options INTERFACE)
target_include_directories(velmora_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(velmora_options INTERFACE
  -Wall -Wextra -Wconversion -Wsign-conversion -Wundef -Wformat=2 -Wnon-virtual-dtor -Wold-style-cast
  -Wimplicit-fallthrough)
# Where files are compiled together, a name of one file would be said to hide that of another.
if(NOT CMAKE_UNITY_BUILD)
  target_compile_options(velmora_options INTERFACE -Wshadow)
endif()
# Qt's and Pango's users are told to say it; with everybody saying it, all can share compiled headers.
target_compile_options(velmora_options INTERFACE -pthread)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_options(velmora_options INTERFACE -Wthread-safety)
endif()
if(VELMORA_SANITIZE)
  # vptr: its check opens a pipe, so it sees ghosts in the tests that use up every descriptor.
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-sanitize=vptr -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
endif()

# A program that runs under a sanitizer says itself which findings are the system libraries' own.
function(velmora_sanitized_program name)
  if(VELMORA_SANITIZE)
    target_sources(${name} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/SanitizerSuppressions.cpp")
  endif()
endfunction()

# The headers that most files include, compiled once for the libraries of a developer's build. That of the packages does
# without, and shows that each file includes what it uses. Objective-C++ would need its own.
if(VELMORA_COMMON_HEADERS AND VELMORA_PLATFORM STREQUAL "Linux")
  add_library(velmora_common_headers OBJECT "${CMAKE_SOURCE_DIR}/cmake/CommonHeaders.cpp")
  target_link_libraries(velmora_common_headers PRIVATE velmora_options)
  target_precompile_headers(velmora_common_headers PRIVATE
    <algorithm> <array> <chrono> <filesystem> <functional> <map> <memory> <optional> <span> <string> <string_view>
    <variant> <vector>)
endif()

# velmora_common_headers(NAME)
function(velmora_common_headers name)
  if(TARGET velmora_common_headers)
    target_precompile_headers(${name} REUSE_FROM velmora_common_headers)
  endif()
endfunction()

# velmora_library(NAME SOURCES... [LINKS...])
function(velmora_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC velmora_options ${ARG_LINKS})
  velmora_common_headers(${name})
endfunction()

# velmora_program(NAME TARGET OUTPUT SOURCES... LINKS...)
function(velmora_program name output)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE velmora_options ${ARG_LINKS})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${output})
  velmora_sanitized_program(${name})
endfunction()

# The headers of GoogleTest, compiled once for all tests.
if(VELMORA_BUILD_TESTS)
  add_library(velmora_test_headers OBJECT "${CMAKE_SOURCE_DIR}/cmake/CommonHeaders.cpp")
  target_link_libraries(velmora_test_headers PRIVATE velmora_options GTest::gmock)
  target_precompile_headers(velmora_test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
endif()

# velmora_test(NAME SOURCES... LINKS... [TIMEOUT seconds] [HEADERS target]): one GoogleTest program; CTest lists each
# of its tests. HEADERS names a target that has compiled more headers than GoogleTest's.
function(velmora_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT;HEADERS" "SOURCES;LINKS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  if(NOT ARG_HEADERS)
    set(ARG_HEADERS velmora_test_headers)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gmock GTest::gtest_main)
  target_compile_options(${name} PRIVATE -fPIC) # as Qt wants it, and as velmora_test_headers is compiled
  target_precompile_headers(${name} REUSE_FROM ${ARG_HEADERS})
  target_compile_definitions(${name} PRIVATE
    VELMORA_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data" VELMORA_BIN="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  velmora_sanitized_program(${name})
  include(GoogleTest)
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT ${ARG_TIMEOUT})
endfunction()
