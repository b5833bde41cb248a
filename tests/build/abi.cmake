# SPDX-License-Identifier: BSD-3-Clause
# Compares the ABI of LIBRARY with the committed BASELINE: additions pass, removals and changes do not.
# cmake -DPYTHON= -DWRITE= -DABIDIFF= -DLIBRARY= -DBASELINE= -DFOLDER= -P abi.cmake
get_filename_component(name ${BASELINE} NAME)
if(NOT EXISTS ${BASELINE})
  message(FATAL_ERROR "${BASELINE}: expected the ABI of ${LIBRARY}, found no file; "
    "the target rdb2nimbra_renew_abi writes it")
endif()
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${PYTHON} ${WRITE} ${LIBRARY} ${FOLDER}/${name} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${ABIDIFF} --no-added-syms ${BASELINE} ${FOLDER}/${name}
  RESULT_VARIABLE status OUTPUT_VARIABLE found ERROR_VARIABLE found)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${name}: expected the ABI of the baseline, found changes (docs/abi.md says which of them are a "
    "break):\n${found}")
endif()
