# SPDX-License-Identifier: BSD-3-Clause
# The list of a room's sources, for a library or a test that compiles them against another platform.

# rdb2nimbra_room_sources(<result> <room>...): the sources of rooms such as loader/timebase, as whole paths.
function(rdb2nimbra_room_sources result)
  set(all "")
  foreach(room IN LISTS ARGN)
    string(REPLACE "/" "_" name ${room})
    get_target_property(sources rdb2nimbra_${name} SOURCES)
    list(TRANSFORM sources PREPEND ${PROJECT_SOURCE_DIR}/${room}/)
    list(APPEND all ${sources})
  endforeach()
  set(${result} ${all} PARENT_SCOPE)
endfunction()
