# SPDX-License-Identifier: BSD-3-Clause
# Checks that a library starts no thread: cmake -DNM=.. -DLIBRARY=.. -P no-threads.cmake
cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND ${NM} -DC --undefined-only ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]*(pthread_create|thrd_create|_M_start_thread|QThread|QtConcurrent)[^\n]*" starters "${symbols}")
if(NOT starters STREQUAL "")
  message(FATAL_ERROR "${LIBRARY}: expected no call that starts a thread, found ${starters}")
endif()
message(STATUS "No call that starts a thread in ${LIBRARY}")
