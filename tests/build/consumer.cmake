# SPDX-License-Identifier: BSD-3-Clause
# Builds a program of somebody else's in each way that CMake has, and runs it:
#   cmake -DHOW=<package|subdirectory|fetchcontent|replacement> -DARGUMENTS=<of the consumer's configure step, between commas>
#     -DCONSUMER=<sources> -DFOLDER=<own folder> -DTOOL=<rdbtool> -DCOMPILER=.. -DGENERATOR=.. -DCONFIGURATION=..
#     -DFLAGS=.. [-DREADELF=..] -P consumer.cmake
# Ways that build the libraries share a folder, and each of them uses the objects of the one before.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

string(REPLACE "," ";" arguments "${ARGUMENTS}")
if(HOW STREQUAL "package")
  file(REMOVE_RECURSE ${FOLDER})
else()
  # The libraries are built once more, so without optimisation, as fast as can be.
  set(CONFIGURATION "")
  string(APPEND FLAGS " -O0")
endif()
set(configure ${CMAKE_COMMAND} -S ${CONSUMER} -G ${GENERATOR} -DHOW=${HOW} ${arguments}
  -DCMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS=${FLAGS}" -DCMAKE_BUILD_TYPE=${CONFIGURATION}
  -DCMAKE_EXPORT_COMPILE_COMMANDS=ON)
run("The consumer's configure step" ${configure} -B ${FOLDER}/build)
run("The consumer's build" ${CMAKE_COMMAND} --build ${FOLDER}/build --target consumer container -j 2)

# Of the consumer's own source: include folders and the language level, and no flag or definition of ours.
file(READ ${FOLDER}/build/compile_commands.json commands)
string(JSON count LENGTH "${commands}")
math(EXPR last "${count} - 1")
set(own "")
foreach(index RANGE ${last})
  string(JSON file GET "${commands}" ${index} file)
  if(file STREQUAL "${CONSUMER}/main.cpp")
    string(JSON own GET "${commands}" ${index} command)
  endif()
endforeach()
string(REGEX MATCHALL " -(W|D|f|O|m)[^ ]*" flags "${own}")
list(FILTER flags EXCLUDE REGEX "^ (-DRDB2NIMBRA_PORTABLE_ELEMENTS|-O[0-9]|-DNDEBUG|-fsanitize=.*)$")
if(own STREQUAL "" OR flags)
  message(FATAL_ERROR "Expected no flag for the consumer's source, found ${flags} in\n${own}")
endif()

set(database ${FOLDER}/scan.rdbx)
run("rdbtool" ${TOOL} synth scan --records 1000 --seed 5 -o ${database})
run("The consumer" ${FOLDER}/build/consumer ${database})
foreach(line "Positions 1000" "GPSTime 1000" "First amplitude at its place: 1")
  if(NOT output MATCHES "(^|\n)${line}\n")
    message(FATAL_ERROR "The consumer printed no line \"${line}\":\n${output}")
  endif()
endforeach()

run("The container's consumer" ${FOLDER}/build/container ${FOLDER}/three.rdbx)
if(NOT output STREQUAL "3 records: 1.5 -2.25 1e+300\n")
  message(FATAL_ERROR "Expected the three values that were written, found ${output}")
endif()

function(refuses text) # further arguments of the configure step
  execute_process(COMMAND ${configure} -B ${FOLDER}/refused ${ARGN}
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE found)
  string(REGEX REPLACE "[ \n]+" " " found "${found}")
  string(FIND "${found}" "${text}" at)
  if(status EQUAL 0 OR at EQUAL -1)
    message(FATAL_ERROR "Expected a refusal with \"${text}\", found status ${status} and \"${found}\"")
  endif()
  file(REMOVE_RECURSE ${FOLDER}/refused)
endfunction()
if(HOW STREQUAL "package")
  refuses("rdb2nimbra has no component \"viewer\"; expected one of " -DCOMPONENTS=client+viewer)
  refuses("compatible with requested version \"2\"" -DVERSION=2)
  file(REMOVE_RECURSE ${FOLDER})
endif()

# The library finds a part that the enclosing project builds in another folder, beside its own folder and in no other.
if(HOW STREQUAL "replacement")
  set(library ${FOLDER}/build/_deps/rdb2nimbra-build/lib/librdb2nimbra.so)
  set(own ${FOLDER}/build/own)
  run("readelf" ${READELF} -dW ${library})
  string(FIND "${output}" "[$ORIGIN:${own}]" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${library}: expected the run path [$ORIGIN:${own}], found\n${output}")
  endif()
  run("ldd" ldd ${library})
  string(FIND "${output}" "libown_calendar.so => ${own}/libown_calendar.so " at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${library}: expected to find libown_calendar.so in ${own}, found\n${output}")
  endif()
endif()
