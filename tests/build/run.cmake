# SPDX-License-Identifier: BSD-3-Clause
# run(<what> <command>...): runs a step of a check and ends the check where it fails; its output is in `output`.
# Included by the checks that build something.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed with ${status}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()
