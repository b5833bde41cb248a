# SPDX-License-Identifier: BSD-3-Clause
# Compares the shared libraries that a library needs with a list:
#   cmake -DREADELF=.. -DLIBRARY=.. "-DEXPECTED=libA.so,libB.so" -P needed-libraries.cmake
cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND ${READELF} -dW ${LIBRARY} OUTPUT_VARIABLE entries COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*" entries "${entries}")
set(needed "")
foreach(entry IN LISTS entries)
  string(REGEX REPLACE ".*: .(.*)[^a-z0-9]$" "\\1" name "${entry}")
  # Names with their version, without the run-time libraries of the language.
  if(NOT name MATCHES "^(libstdc\\+\\+|libgcc_s|libc|libm|libpthread|ld-linux.*)\\.so")
    list(APPEND needed ${name})
  endif()
endforeach()
string(REPLACE "," ";" expected "${EXPECTED}")
list(SORT needed)
list(SORT expected)
if(NOT "${needed}" STREQUAL "${expected}")
  message(FATAL_ERROR "${LIBRARY} needs ${needed}; expected ${expected}")
endif()
message(STATUS "Needed: ${needed}")
