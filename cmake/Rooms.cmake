# Stops the configure step on an include that points up the order of the rooms.
# The order itself stands in cmake/check-rooms.cmake, which also runs as a test.
function(rdb2nimbra_check_rooms)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -DROOT=${PROJECT_SOURCE_DIR} -P ${PROJECT_SOURCE_DIR}/cmake/check-rooms.cmake
    RESULT_VARIABLE status ERROR_VARIABLE findings)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${findings}")
  endif()
endfunction()
