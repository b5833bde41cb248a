# SPDX-License-Identifier: BSD-3-Clause
# How a test program is declared: rdb2nimbra_test(<name> SOURCES ... LINKS ... [DEFINITIONS ...] [MEMORY]) makes the
# program <name>, which is the target rdb2nimbra_<name>.
# `ctest -L loader/timebase` runs the tests of the folder tests/loader/timebase, and so on. MEMORY adds the whole
# program under valgrind, which runs on `ctest -C Memcheck -L memory` only.
find_package(GTest REQUIRED)
include(GoogleTest)

# Real files of open formats, used by tests that are skipped, with a message, where the folder is absent.
set(RDB2NIMBRA_TEST_DATA ${PROJECT_SOURCE_DIR}/../shared/data CACHE PATH "Folder with real survey files")

find_program(RDB2NIMBRA_VALGRIND_PROGRAM valgrind)

function(rdb2nimbra_test name)
  cmake_parse_arguments(arg "MEMORY" "" "SOURCES;LINKS;DEFINITIONS" ${ARGN})
  set(target rdb2nimbra_${name})
  add_executable(${target} ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name})
  target_link_libraries(${target} PRIVATE ${arg_LINKS} rdb2nimbra_settings GTest::gmock GTest::gtest_main)
  target_compile_definitions(${target} PRIVATE RDB2NIMBRA_TEST_DATA="${RDB2NIMBRA_TEST_DATA}" ${arg_DEFINITIONS})
  file(RELATIVE_PATH area ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
  gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${area} TIMEOUT 600)
  # valgrind cannot raise bad_alloc; it ends the program where an allocation fails.
  if(arg_MEMORY AND RDB2NIMBRA_VALGRIND_PROGRAM)
    add_test(NAME memory_${name} CONFIGURATIONS Memcheck
      COMMAND ${RDB2NIMBRA_VALGRIND_PROGRAM} -q --error-exitcode=9 --leak-check=full --show-leak-kinds=definite
        --errors-for-leak-kinds=definite --suppressions=${PROJECT_SOURCE_DIR}/tests/valgrind.supp
        $<TARGET_FILE:${target}> --gtest_filter=-*BeyondAnyMemory*)
    set_tests_properties(memory_${name} PROPERTIES LABELS memory TIMEOUT 1800)
  endif()
endfunction()
