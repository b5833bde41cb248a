# SPDX-License-Identifier: BSD-3-Clause
# Configures a project that has all of rdb2nimbra as a part and refuses any name without the prefix:
#   cmake -DROOT=<sources> -DFOLDER=<own folder> -DCOMPILER=.. -DGENERATOR=.. -P enclosing.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)
file(REMOVE_RECURSE ${FOLDER})
run("Configuring an enclosing project" ${CMAKE_COMMAND} -S ${ROOT}/tests/enclosing -B ${FOLDER} -G ${GENERATOR}
  -DROOT=${ROOT} -DCMAKE_CXX_COMPILER=${COMPILER})
string(REGEX MATCH "([0-9]+) targets, each with the project's prefix" line "${output}")
if(NOT CMAKE_MATCH_1 GREATER 50)
  message(FATAL_ERROR "Expected more than 50 checked targets, found \"${line}\":\n${output}")
endif()
file(REMOVE_RECURSE ${FOLDER})
