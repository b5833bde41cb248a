# SPDX-License-Identifier: BSD-3-Clause
# Language level, warnings and sanitizers, the same for every target of the project. The variables below hold in this
# project's folders only; an enclosing project keeps its own.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

option(RDB2NIMBRA_WARNINGS_AS_ERRORS "Stop at the first warning (presets dev and CI)" OFF)
set(RDB2NIMBRA_SANITIZE "" CACHE STRING "Value of -fsanitize=, empty for none")
option(RDB2NIMBRA_COVERAGE "Instrument for line coverage" OFF)
option(RDB2NIMBRA_FUZZ_ENGINE "Link the fuzz targets with clang's engine (preset fuzz)" OFF)

option(RDB2NIMBRA_PORTABLE_ELEMENTS "Make fresh vectors as any standard library can (fresh_elements.h)" OFF)

# Usage requirements of a program that includes a header of the project, here and in an installed tree. No warning flags.
add_library(rdb2nimbra_headers INTERFACE)
rdb2nimbra_public(rdb2nimbra_headers headers)
target_compile_features(rdb2nimbra_headers INTERFACE cxx_std_20)
target_include_directories(rdb2nimbra_headers INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/rdb2nimbra>)
if(RDB2NIMBRA_PORTABLE_ELEMENTS)
  target_compile_definitions(rdb2nimbra_headers INTERFACE RDB2NIMBRA_PORTABLE_ELEMENTS)
endif()

# How the project's own sources are compiled; linked PRIVATE everywhere, so that no consumer gets its warnings.
add_library(rdb2nimbra_settings INTERFACE)
target_link_libraries(rdb2nimbra_settings INTERFACE rdb2nimbra_headers)
target_compile_options(rdb2nimbra_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
if(RDB2NIMBRA_WARNINGS_AS_ERRORS)
  target_compile_options(rdb2nimbra_settings INTERFACE -Werror)
endif()
# The ABI is read from debug information with types, as GCC writes it for amd64.
option(RDB2NIMBRA_COMPARE_ABI "Compare the ABI of the libraries with the committed baseline, where abidiff is installed" OFF)
find_program(RDB2NIMBRA_ABIDIFF abidiff)
set(RDB2NIMBRA_CHECK_ABI OFF)
if(RDB2NIMBRA_COMPARE_ABI AND RDB2NIMBRA_ABIDIFF AND NOT RDB2NIMBRA_SANITIZE
    AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  set(RDB2NIMBRA_CHECK_ABI ON)
  target_compile_options(rdb2nimbra_settings INTERFACE
    $<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>>:-g2>)
endif()
if(RDB2NIMBRA_SANITIZE)
  add_compile_options(-fsanitize=${RDB2NIMBRA_SANITIZE} -fno-omit-frame-pointer)
  if(RDB2NIMBRA_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
  add_link_options(-fsanitize=${RDB2NIMBRA_SANITIZE})
endif()
if(RDB2NIMBRA_FUZZ_ENGINE)
  # Coverage counters that guide the engine; the engine itself is linked to the fuzz targets only.
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()
if(RDB2NIMBRA_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
