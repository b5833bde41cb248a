# SPDX-License-Identifier: BSD-3-Clause
# The function rdb2nimbra_add_conformance for this build, and the promises as installed sources.
set(conformance_header "${RDB2NIMBRA_CLIENT_HEADER}")
if(conformance_header STREQUAL "")
  set(conformance_header platform/client/rdb.h)
endif()

set(conformance_folder ${PROJECT_SOURCE_DIR}/conformance)
configure_file(${PROJECT_SOURCE_DIR}/cmake/rdb2nimbra-conformance.cmake.in
  ${PROJECT_BINARY_DIR}/conformance/rdb2nimbra-conformance.cmake @ONLY)
include(${PROJECT_BINARY_DIR}/conformance/rdb2nimbra-conformance.cmake)

if(RDB2NIMBRA_INSTALL)
  set(conformance_package ${CMAKE_INSTALL_LIBDIR}/cmake/rdb2nimbra)
  # An installed tree may be moved, so the module finds the sources from its own place.
  file(RELATIVE_PATH conformance_folder ${CMAKE_INSTALL_FULL_LIBDIR}/cmake/rdb2nimbra
    ${CMAKE_INSTALL_FULL_DATADIR}/rdb2nimbra/conformance)
  string(PREPEND conformance_folder "\${CMAKE_CURRENT_FUNCTION_LIST_DIR}/")
  configure_file(${PROJECT_SOURCE_DIR}/cmake/rdb2nimbra-conformance.cmake.in
    ${PROJECT_BINARY_DIR}/rdb2nimbra-conformance.cmake @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/rdb2nimbra-conformance.cmake DESTINATION ${conformance_package}
    COMPONENT development)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/conformance DESTINATION ${CMAKE_INSTALL_DATADIR}/rdb2nimbra
    COMPONENT development)
endif()
