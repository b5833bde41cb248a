# SPDX-License-Identifier: BSD-3-Clause
# What `cmake --install` puts where: libraries, headers, programs, the CMake package and the pkg-config files.
# Components: runtime (libraries), development, tools (programs).
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

get_property(public_targets GLOBAL PROPERTY RDB2NIMBRA_PUBLIC_TARGETS)
get_property(components GLOBAL PROPERTY RDB2NIMBRA_COMPONENTS)
install(TARGETS ${public_targets} EXPORT rdb2nimbra-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
if(RDB2NIMBRA_TOOLS)
  install(TARGETS rdb2nimbra_rdbtool rdb2nimbra_nimbra_host
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
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
  set(file ${PROJECT_SOURCE_DIR}/${header})
  if(EXISTS ${file}.in) # made at configuration
    set(file ${PROJECT_BINARY_DIR}/${header})
  endif()
  if(header STREQUAL "include/rdb2nimbra/client.h" AND CLIENT IN_LIST RDB2NIMBRA_REPLACED)
    # The installed header names the chosen client itself, so that a consumer needs no definition.
    file(READ ${file} text)
    string(REPLACE "platform/client/rdb.h" "${RDB2NIMBRA_CLIENT_HEADER}" text "${text}")
    set(file ${PROJECT_BINARY_DIR}/installed/client.h)
    file(CONFIGURE OUTPUT ${file} CONTENT "${text}" @ONLY)
  endif()
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/rdb2nimbra/${folder})
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/rdb2nimbra)
install(EXPORT rdb2nimbra-targets NAMESPACE rdb2nimbra:: DESTINATION ${package_folder})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/rdb2nimbra-config.cmake.in
  ${PROJECT_BINARY_DIR}/rdb2nimbra-config.cmake INSTALL_DESTINATION ${package_folder}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/rdb2nimbra-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/rdb2nimbra-config.cmake ${PROJECT_BINARY_DIR}/rdb2nimbra-config-version.cmake
  DESTINATION ${package_folder})

# pkg-config knows nothing of targets of others, so it is for the embedded platform only.
if(NOT RDB2NIMBRA_REPLACED)
  set(pkgconfig_folder ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH to_prefix ${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})
  file(RELATIVE_PATH to_libraries ${pkgconfig_folder} ${CMAKE_INSTALL_FULL_LIBDIR})
  file(RELATIVE_PATH to_headers ${pkgconfig_folder} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
  set(definitions "")
  if(RDB2NIMBRA_PORTABLE_ELEMENTS)
    set(definitions " -DRDB2NIMBRA_PORTABLE_ELEMENTS")
  endif()
  # rdb2nimbra_pkgconfig(<package> <libraries> <description>)
  function(rdb2nimbra_pkgconfig package libraries description)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/rdb2nimbra.pc.in ${PROJECT_BINARY_DIR}/${package}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  endfunction()
  rdb2nimbra_pkgconfig(rdb2nimbra "-lrdb2nimbra -lrdb2nimbra_client -lrdb2nimbra_model" "${PROJECT_DESCRIPTION}")
  if(TARGET rdb2nimbra::container)
    rdb2nimbra_pkgconfig(rdb2nimbra-container -lrdb2nimbra_container "Reads, writes and verifies database files")
  endif()
endif()
