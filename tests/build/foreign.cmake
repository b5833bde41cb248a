# SPDX-License-Identifier: BSD-3-Clause
# Builds a whole foreign platform, the library on it and a host on both, and compares what the host loads:
#   cmake -DROOT=<sources> -DFOLDER=<own folder> -DCOMPILER=.. -DGENERATOR=.. -DPYTHON=.. -DHOST=<nimbra-host>
#     -P foreign.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

set(common -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-O0
  -DCMAKE_CXX_FLAGS_DEBUG=)
file(REMOVE_RECURSE ${FOLDER})
function(builds what sources further) # further: arguments of the configure step, the rest those of the build step
  run("Configuring the ${what}" ${CMAKE_COMMAND} -S ${sources} -B ${FOLDER}/${what} ${common} ${further})
  run("Building the ${what}" ${CMAKE_COMMAND} --build ${FOLDER}/${what} -j 2)
endfunction()

# Outside the sources, because the library keeps no run path into its own project.
run("Making a folder for the platform" mktemp -d)
string(STRIP "${output}" platform)
builds(platform ${ROOT}/tests/foreign -DQUARRY_POINT_HEADERS=${ROOT})
run("Installing the platform" ${CMAKE_COMMAND} --install ${FOLDER}/platform --prefix ${platform})

set(choice -DCMAKE_PREFIX_PATH=${platform} -DRDB2NIMBRA_TESTS=OFF -DRDB2NIMBRA_TOOLS=OFF -DRDB2NIMBRA_BENCHMARKS=OFF
  -DRDB2NIMBRA_CLIENT=quarry::client -DRDB2NIMBRA_CLIENT_HEADER=quarry/database.h
  -DRDB2NIMBRA_MODEL=quarry::model
  -DRDB2NIMBRA_TRANSFORMATION=quarry::transformation -DRDB2NIMBRA_TRANSFORMATION_HEADER=quarry/transformation.h
  -DRDB2NIMBRA_CALENDAR=quarry::calendar -DRDB2NIMBRA_CALENDAR_HEADER=quarry/calendar.h)
builds(library ${ROOT} "${choice}")
set(installed ${FOLDER}/prefix/library)
run("Installing the library" ${CMAKE_COMMAND} --install ${FOLDER}/library --prefix ${installed})

builds(host ${ROOT}/tests/foreign/host "-DCMAKE_PREFIX_PATH=${platform};-Drdb2nimbra_ROOT=${installed}")

run("The conformance program" ${FOLDER}/host/quarry-conformance)
if(NOT output MATCHES "\n([1-9][0-9]*) promises: ([1-9][0-9]*) kept, 0 broken\n$" OR
    NOT CMAKE_MATCH_1 EQUAL CMAKE_MATCH_2)
  message(FATAL_ERROR "Expected that the foreign client keeps every promise, found\n${output}")
endif()

run("The comparison of the loads" ${PYTHON} ${CMAKE_CURRENT_LIST_DIR}/equal_values.py
  --foreign-host ${FOLDER}/host/foreign_host --host ${HOST} --folder ${FOLDER}/databases)
message(STATUS "${output}")
file(REMOVE_RECURSE ${FOLDER} ${platform})
