# SPDX-License-Identifier: BSD-3-Clause
# Installs the build, builds a program of somebody else's from the installed tree and runs it and the installed tools:
#   cmake -DBUILD=<build folder> -DCONSUMER=<sources> -DFOLDER=<own folder> -DCOMPILER=.. -DGENERATOR=..
#     -DCONFIGURATION=.. -DFLAGS=.. -P consumer.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${FOLDER})
run("cmake --install" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}/first --config ${CONFIGURATION})
# A tree that has been moved works as well, and no path of this build may help it.
file(RENAME ${FOLDER}/first ${FOLDER}/prefix)
set(bin ${FOLDER}/prefix/bin)
if(NOT EXISTS ${bin}/proj.db)
  message(FATAL_ERROR "proj.db is not beside the installed programs in ${bin}")
endif()
file(GLOB installed ${bin}/rdbtool ${bin}/nimbra-host ${FOLDER}/prefix/lib/*.so ${FOLDER}/prefix/lib/*/*.so)
list(LENGTH installed count)
if(NOT count EQUAL 8)
  message(FATAL_ERROR "Expected two programs and six libraries in the installed tree, found ${installed}")
endif()
foreach(file IN LISTS installed)
  run("readelf" ${READELF} -dW ${file})
  string(REGEX MATCH "R(UN)?PATH[^\n]*" path "${output}")
  if(NOT path MATCHES "\\[\\$ORIGIN[^:]*\\]$")
    message(FATAL_ERROR "${file}: expected a run-time path that is \$ORIGIN or begins with it, found \"${path}\"")
  endif()
endforeach()

run("The consumer's configure step" ${CMAKE_COMMAND} -S ${CONSUMER} -B ${FOLDER}/build -G ${GENERATOR}
  -DCMAKE_PREFIX_PATH=${FOLDER}/prefix -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS}
  -DCMAKE_BUILD_TYPE=${CONFIGURATION})
# Components, of which there are none, are refused with a reason.
execute_process(COMMAND ${CMAKE_COMMAND} -S ${CONSUMER} -B ${FOLDER}/refused -G ${GENERATOR}
  -DCMAKE_PREFIX_PATH=${FOLDER}/prefix -DCMAKE_CXX_COMPILER=${COMPILER} -DCOMPONENT=client
  RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE refusal)
if(status EQUAL 0 OR NOT refusal MATCHES "expected no components, found client")
  message(FATAL_ERROR "Expected a refusal of the component, found status ${status} and:\n${refusal}")
endif()
run("The consumer's build" ${CMAKE_COMMAND} --build ${FOLDER}/build)

if(NOT EXISTS ${FOLDER}/build/proj.db)
  message(FATAL_ERROR "The consumer found no proj.db by the package's rdb2nimbra_PROJ_DB")
endif()

set(database ${FOLDER}/scan.rdbx)
run("The installed rdbtool" ${bin}/rdbtool synth scan --records 1000 --seed 5 -o ${database})
run("The installed nimbra-host" ${bin}/nimbra-host load ${database} --json)
run("The consumer" ${FOLDER}/build/consumer ${database})
foreach(line "Positions 1000" "GPSTime 1000" "First amplitude at its place: 1")
  if(NOT output MATCHES "(^|\n)${line}\n")
    message(FATAL_ERROR "The consumer printed no line \"${line}\":\n${output}")
  endif()
endforeach()
set(flight ${FOLDER}/flight.pofx)
run("The installed rdbtool" ${bin}/rdbtool synth trajectory --records 1000 --seed 5 -o ${flight})
run("The installed nimbra-host" ${bin}/nimbra-host load ${flight} --epsg 32633)
file(REMOVE_RECURSE ${FOLDER})
