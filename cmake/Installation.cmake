# SPDX-License-Identifier: BSD-3-Clause
# What `cmake --install` puts where, and the CMake package rdb2nimbra with the namespace rdb2nimbra::.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/rdb2nimbra)
set(libraries rdb2nimbra)
foreach(pair CLIENT:rdb2nimbra_platform_client CLIENT:rdb2nimbra_container MODEL:rdb2nimbra_model
    TRANSFORMATION:rdb2nimbra_platform_transformation CALENDAR:rdb2nimbra_platform_calendar)
  string(REPLACE ":" ";" pair ${pair})
  list(POP_FRONT pair interface embedded)
  if(NOT interface IN_LIST RDB2NIMBRA_REPLACED)
    list(APPEND libraries ${embedded})
  endif()
endforeach()
# Libraries find each other in their own folder, programs find them from theirs.
set_target_properties(${libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
if(RDB2NIMBRA_REPLACED)
  # The replacements aren't installed with them and stay where they were found.
  set_target_properties(${libraries} PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
endif()
install(TARGETS ${libraries} rdb2nimbra_include rdb2nimbra_arrays_nimbra rdb2nimbra_arrays_quillon rdb2nimbra_headers
  EXPORT rdb2nimbra-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

if(RDB2NIMBRA_TOOLS)
  file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(rdbtool nimbra-host PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  install(TARGETS rdbtool nimbra-host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# Headers keep their folders; those of a replaced part come with its replacement.
file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/public-headers.txt headers)
if(CLIENT IN_LIST RDB2NIMBRA_REPLACED)
  list(FILTER headers EXCLUDE REGEX "^(platform/client|container)/")
endif()
if(MODEL IN_LIST RDB2NIMBRA_REPLACED)
  list(FILTER headers EXCLUDE REGEX "^model/")
endif()
foreach(header IN LISTS headers)
  get_filename_component(folder ${header} DIRECTORY)
  # The public ones come to include/rdb2nimbra itself.
  string(REGEX REPLACE "^include/rdb2nimbra$" "." folder ${folder})
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/rdb2nimbra/${folder})
endforeach()

install(EXPORT rdb2nimbra-targets NAMESPACE rdb2nimbra:: DESTINATION ${package_folder})
set(projection_data "")
if(NOT TRANSFORMATION IN_LIST RDB2NIMBRA_REPLACED)
  set(projection_data ${CMAKE_INSTALL_BINDIR}/proj.db)
endif()
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/rdb2nimbra-config.cmake.in
  ${PROJECT_BINARY_DIR}/rdb2nimbra-config.cmake INSTALL_DESTINATION ${package_folder} PATH_VARS projection_data)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/rdb2nimbra-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/rdb2nimbra-config.cmake ${PROJECT_BINARY_DIR}/rdb2nimbra-config-version.cmake
  DESTINATION ${package_folder})
