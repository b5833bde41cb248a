# Fails on an include that points up the order of the rooms: cmake -DROOT=<sources> -P check-rooms.cmake
# A room may include itself, and every room that stands before it in this list.
cmake_policy(SET CMP0057 NEW)
set(rooms
  platform/torvel/core
  storage/torvel
  platform/torvel
  storage/quillon
  platform/nimbra
  storage/nimbra
  platform/rdb
  platform/proj
  platform/ondrel
  rdb
  metadata
  timebase
  waveform
  pointcloud
  trajectory
  include
  host
  tools
  examples)
# Rooms of one floor that do not know each other, as "room>room".
set(strangers
  "platform/proj>platform/rdb" "platform/ondrel>platform/rdb" "platform/ondrel>platform/proj"
  "platform/rdb>storage/nimbra" "platform/proj>storage/nimbra" "platform/ondrel>storage/nimbra"
  "storage/quillon>platform/torvel" "tools>host" "examples>host" "examples>tools")
# The trajectory import shares the column buffer of the point cloud, and nothing else.
set(shared_headers "trajectory>pointcloud/column_buffer.h")

function(room_of path result)
  set(best "")
  foreach(room IN LISTS rooms)
    string(FIND "${path}" "${room}/" at)
    string(LENGTH "${room}" length)
    string(LENGTH "${best}" best_length)
    if(at EQUAL 0 AND length GREATER best_length)
      set(best "${room}")
    endif()
  endforeach()
  set(${result} "${best}" PARENT_SCOPE)
endfunction()

set(problems "")
foreach(room IN LISTS rooms)
  file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/${room}/*.h ${ROOT}/${room}/*.cpp)
  foreach(file IN LISTS files)
    room_of("${file}" from)
    if(NOT from STREQUAL room)
      continue()
    endif()
    list(FIND rooms "${from}" from_floor)
    file(STRINGS ${ROOT}/${file} includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
    foreach(line IN LISTS includes)
      string(REGEX REPLACE ".*\"([^\"]+)\".*" "\\1" target "${line}")
      room_of("${target}" to)
      if(to STREQUAL "")
        string(APPEND problems "  ${file}: include \"${target}\" is in no room; write the path from the root\n")
        continue()
      endif()
      list(FIND rooms "${to}" to_floor)
      if(to_floor GREATER from_floor OR "${from}>${to}" IN_LIST strangers)
        string(APPEND problems "  ${file}: room ${from} may not include ${target}, which is in room ${to}\n")
      elseif(from STREQUAL "trajectory" AND to STREQUAL "pointcloud" AND NOT "${from}>${target}" IN_LIST shared_headers)
        string(APPEND problems "  ${file}: of the point-cloud room only the column buffer may be included, not ${target}\n")
      endif()
    endforeach()
  endforeach()
endforeach()
if(NOT problems STREQUAL "")
  message(FATAL_ERROR "Includes that point up the order of the rooms:\n${problems}")
endif()
