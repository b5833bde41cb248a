# SPDX-License-Identifier: BSD-3-Clause
# Runs programs in a folder that holds libraries of the names they need, none of which may be loaded:
#   cmake "-DPROGRAMS=<program>,<program>" -DLIBRARIES=<folder of the libraries> -DFOLDER=<own folder> -DCOMPILER=..
#     -DMAJOR=.. -P planted-library.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
file(WRITE ${FOLDER}/planted.c [[
#include <stdio.h>
#include <stdlib.h>
__attribute__((constructor)) static void report(void) {
  puts("A planted library was loaded.");
  fflush(stdout);
  _Exit(77);
}
]])
file(GLOB libraries RELATIVE ${LIBRARIES} ${LIBRARIES}/librdb2nimbra*.so.${MAJOR})
if(NOT "librdb2nimbra_calendar.so.${MAJOR}" IN_LIST libraries)
  message(FATAL_ERROR "Expected the project's libraries in ${LIBRARIES}, found ${libraries}")
endif()
run("Building a library" ${COMPILER} -x c -shared -fPIC -o ${FOLDER}/planted.so ${FOLDER}/planted.c)
foreach(library IN LISTS libraries)
  file(COPY_FILE ${FOLDER}/planted.so ${FOLDER}/${library})
endforeach()

# loaded_from(<variable> <program> <environment>...): where the system's loader finds the project's libraries.
function(loaded_from result program)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_TRACE_LOADED_OBJECTS=1 ${ARGN} ${program} WORKING_DIRECTORY ${FOLDER}
    OUTPUT_VARIABLE lines ERROR_VARIABLE lines)
  string(REGEX MATCHALL "librdb2nimbra[a-z_.0-9]* => [^ \n]*" places "${lines}")
  list(TRANSFORM places REPLACE ".* => (.*)/[^/]*$" "\\1")
  list(REMOVE_DUPLICATES places)
  set(${result} "${places}" PARENT_SCOPE)
endfunction()

string(REPLACE "," ";" programs "${PROGRAMS}")
foreach(program IN LISTS programs)
  loaded_from(planted ${program} LD_LIBRARY_PATH=${FOLDER})
  if(NOT planted STREQUAL FOLDER)
    message(FATAL_ERROR "${program}: expected the planted libraries where LD_LIBRARY_PATH leads there, found ${planted}")
  endif()
  loaded_from(places ${program} --unset=LD_LIBRARY_PATH)
  set(found "")
  foreach(place IN LISTS places)
    file(REAL_PATH ${place} place)
    list(APPEND found ${place})
  endforeach()
  list(REMOVE_DUPLICATES found)
  if(NOT found STREQUAL LIBRARIES)
    message(FATAL_ERROR "${program}: expected libraries of ${LIBRARIES}, found those of ${found}")
  endif()
  execute_process(COMMAND ${program} --help WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(status EQUAL 77 OR status EQUAL 127)
    message(FATAL_ERROR "${program} ended with ${status} in the folder of the planted libraries:\n${output}")
  endif()
endforeach()
file(REMOVE_RECURSE ${FOLDER})
