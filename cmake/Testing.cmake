# How a test program is declared: rdb2nimbra_test(<name> SOURCES ... LINKS ... [LABELS ...] [DEFINITIONS ...]).
find_package(GTest REQUIRED)
include(GoogleTest)

# Real files of open formats, used by tests that skip loudly where the folder is absent.
set(RDB2NIMBRA_TEST_DATA ${PROJECT_SOURCE_DIR}/../shared/data CACHE PATH "Folder with real survey files")

function(rdb2nimbra_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS;LABELS;DEFINITIONS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} rdb2nimbra_settings GTest::gmock GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE RDB2NIMBRA_TEST_DATA="${RDB2NIMBRA_TEST_DATA}" ${arg_DEFINITIONS})
  set(properties TIMEOUT 600)
  if(arg_LABELS)
    list(APPEND properties LABELS "${arg_LABELS}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()
