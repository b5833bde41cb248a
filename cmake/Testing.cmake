# SPDX-License-Identifier: BSD-3-Clause
# How a test program is declared: rdb2nimbra_test(<name> SOURCES ... LINKS ... [DEFINITIONS ...] [MEMORY]).
# `ctest -L rdb` runs the tests of the folder tests/rdb, and so on. MEMORY adds the whole
# program under valgrind, which runs on `ctest -C Memcheck -L memory` only.
find_package(GTest REQUIRED)
include(GoogleTest)

# Real files of open formats, used by tests that skip loudly where the folder is absent.
set(RDB2NIMBRA_TEST_DATA ${PROJECT_SOURCE_DIR}/../shared/data CACHE PATH "Folder with real survey files")

find_program(VALGRIND_PROGRAM valgrind)

function(rdb2nimbra_test name)
  cmake_parse_arguments(arg "MEMORY" "" "SOURCES;LINKS;DEFINITIONS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} rdb2nimbra_settings GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE RDB2NIMBRA_TEST_DATA="${RDB2NIMBRA_TEST_DATA}" ${arg_DEFINITIONS})
  file(RELATIVE_PATH area ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${area} TIMEOUT 600)
  # valgrind cannot raise bad_alloc; it ends the program where an allocation fails.
  if(arg_MEMORY AND VALGRIND_PROGRAM)
    add_test(NAME memory_${name} CONFIGURATIONS Memcheck
      COMMAND ${VALGRIND_PROGRAM} -q --error-exitcode=9 --leak-check=full --show-leak-kinds=definite
        --errors-for-leak-kinds=definite --suppressions=${PROJECT_SOURCE_DIR}/tests/valgrind.supp
        $<TARGET_FILE:${name}> --gtest_filter=-*BeyondAnyMemory*)
    set_tests_properties(memory_${name} PROPERTIES LABELS memory TIMEOUT 1800)
  endif()
endfunction()
