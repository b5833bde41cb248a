# SPDX-License-Identifier: BSD-3-Clause
# The four parts as imported targets, relative to this file.
get_filename_component(quarry_prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
foreach(part client model transformation calendar)
  if(NOT TARGET quarry::${part})
    add_library(quarry::${part} SHARED IMPORTED)
    set_target_properties(quarry::${part} PROPERTIES
      IMPORTED_LOCATION ${quarry_prefix}/lib/libquarry_${part}.so
      INTERFACE_INCLUDE_DIRECTORIES ${quarry_prefix}/include)
  endif()
endforeach()
