# SPDX-License-Identifier: BSD-3-Clause
# Which implementation of each closed interface the library is built against.
# docs/integration.md specifies what a replacement has to provide.
#
# A choice is a target of an enclosing project, a package that has a target of its own name ("scanner"), or a target
# of a package ("scanner::client" of the package scanner). Where nothing is chosen, the embedded one is built.
set(RDB2NIMBRA_CLIENT "" CACHE STRING "Target or package in place of the embedded database client")
set(RDB2NIMBRA_CLIENT_HEADER "" CACHE STRING "Header that declares riegl::rdb for RDB2NIMBRA_CLIENT")
set(RDB2NIMBRA_MODEL "" CACHE STRING "Target or package in place of the embedded data model")
set(RDB2NIMBRA_TRANSFORMATION "" CACHE STRING "Target or package in place of the embedded transformation")
set(RDB2NIMBRA_TRANSFORMATION_HEADER "" CACHE STRING "Header that declares Proj::transform")
set(RDB2NIMBRA_CALENDAR "" CACHE STRING "Target or package in place of the embedded calendar")
set(RDB2NIMBRA_CALENDAR_HEADER "" CACHE STRING "Header that declares Ondrel::getWeekDay")

# The rooms of the embedded data model, which are replaced together.
set(RDB2NIMBRA_MODEL_ROOMS model/torvel/core model/torvel/references model/torvel/objects model/nimbra)

set(RDB2NIMBRA_REPLACED "")          # the interfaces that are not embedded
set(RDB2NIMBRA_REPLACEMENT_PACKAGES "") # what the installed package has to find first
set(RDB2NIMBRA_REPLACEMENT_FOLDERS "")  # where replacements of the enclosing project are built
foreach(interface CLIENT MODEL TRANSFORMATION CALENDAR)
  set(chosen "${RDB2NIMBRA_${interface}}")
  set(header "${RDB2NIMBRA_${interface}_HEADER}")
  # One without the other would compile against one implementation and link another. A model has no such header.
  if(chosen STREQUAL "")
    if(NOT header STREQUAL "")
      message(FATAL_ERROR "RDB2NIMBRA_${interface}_HEADER is set (${header}), and RDB2NIMBRA_${interface} is not; "
        "set it to the target or package that has this header")
    endif()
    continue()
  endif()
  if(header STREQUAL "" AND NOT interface STREQUAL "MODEL")
    message(FATAL_ERROR "RDB2NIMBRA_${interface} is set (${chosen}), and RDB2NIMBRA_${interface}_HEADER is not; "
      "set it to the header that declares this part, as an include in the code would name it")
  endif()
  if(chosen MATCHES "/")
    message(FATAL_ERROR "RDB2NIMBRA_${interface}: expected a target or a package, found the path ${chosen}; "
      "put it into an imported target (docs/build.md)")
  endif()
  list(APPEND RDB2NIMBRA_REPLACED ${interface})
  if(TARGET ${chosen})
    # A library that the enclosing project builds. CMake itself adds no folder of the build to an installed run path.
    get_target_property(imported ${chosen} IMPORTED)
    get_target_property(kind ${chosen} TYPE)
    if(NOT imported AND kind STREQUAL "SHARED_LIBRARY")
      list(APPEND RDB2NIMBRA_REPLACEMENT_FOLDERS "$<TARGET_FILE_DIR:${chosen}>")
    endif()
  else()
    string(REGEX REPLACE "::.*" "" package "${chosen}")
    find_package(${package} REQUIRED)
    list(APPEND RDB2NIMBRA_REPLACEMENT_PACKAGES ${package})
    if(NOT TARGET ${chosen})
      message(FATAL_ERROR "RDB2NIMBRA_${interface}: the package ${package} has no target ${chosen}")
    endif()
  endif()
endforeach()
list(REMOVE_DUPLICATES RDB2NIMBRA_REPLACEMENT_PACKAGES)

# rdb2nimbra_header_folders(<result> <target>): the folders in which a target's headers are found: its own, those of the
# targets that it links. Where a folder is known to the build only, `<result>_WHOLE` is OFF. `<result>_TARGETS` has all
# these targets.
function(rdb2nimbra_header_folders result target)
  set(pending ${target})
  set(seen "")
  set(folders "")
  set(whole ON)
  while(pending)
    list(POP_FRONT pending next)
    if(NOT TARGET "${next}" OR next IN_LIST seen)
      continue()
    endif()
    list(APPEND seen ${next})
    get_target_property(own ${next} INTERFACE_INCLUDE_DIRECTORIES)
    get_target_property(linked ${next} INTERFACE_LINK_LIBRARIES)
    foreach(folder IN LISTS own)
      string(REGEX REPLACE "^\\$<BUILD_INTERFACE:(.*)>$" "\\1" folder "${folder}")
      if(folder MATCHES "^\\$<" AND NOT folder MATCHES "^\\$<INSTALL_INTERFACE:")
        set(whole OFF)
      elseif(folder)
        list(APPEND folders ${folder})
      endif()
    endforeach()
    list(APPEND pending ${linked})
  endwhile()
  set(${result} ${folders} PARENT_SCOPE)
  set(${result}_WHOLE ${whole} PARENT_SCOPE)
  set(${result}_TARGETS ${seen} PARENT_SCOPE)
endfunction()

# rdb2nimbra_missing_headers(<interface> <user> <header>...): adds a line to `missing` for each header that the chosen
# target lacks. `user` is what includes it.
set(missing "")
function(rdb2nimbra_missing_headers interface user)
  rdb2nimbra_header_folders(folders ${RDB2NIMBRA_${interface}})
  foreach(header IN LISTS ARGN)
    find_path(found ${header} PATHS ${folders} ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES} NO_DEFAULT_PATH NO_CACHE)
    if(NOT found AND folders_WHOLE)
      string(APPEND missing "  RDB2NIMBRA_${interface}: ${RDB2NIMBRA_${interface}} has no header ${header} in "
        "\"${folders}\"; ${user} includes it\n")
    endif()
    unset(found)
  endforeach()
  set(missing "${missing}" PARENT_SCOPE)
endfunction()

set(CLIENT_user include/rdb2nimbra/client.h)
set(TRANSFORMATION_user loader/trajectory/projection.h)
set(CALENDAR_user loader/timebase/calendar.h)
foreach(interface CLIENT TRANSFORMATION CALENDAR)
  if(interface IN_LIST RDB2NIMBRA_REPLACED)
    rdb2nimbra_missing_headers(${interface} ${${interface}_user} ${RDB2NIMBRA_${interface}_HEADER})
  endif()
endforeach()

# Another data model has headers of the same names. Its folders come before the project's own, and it must have every
# header of those rooms that the library includes, so that no declaration of the embedded model is taken for one of the replacement.
if(MODEL IN_LIST RDB2NIMBRA_REPLACED)
  # A folder of an imported target is a system's one, which is searched after all others, also where another target
  # has the same folder.
  set(with_headers "")
  foreach(interface IN LISTS RDB2NIMBRA_REPLACED)
    rdb2nimbra_header_folders(all ${RDB2NIMBRA_${interface}})
    foreach(target IN LISTS all_TARGETS)
      rdb2nimbra_header_folders(folders ${target})
      list(FILTER folders INCLUDE REGEX "^/")
      list(TRANSFORM folders APPEND /model)
      set(has_headers OFF)
      foreach(folder IN LISTS folders)
        if(EXISTS ${folder})
          set(has_headers ON)
        endif()
      endforeach()
      if(has_headers OR target STREQUAL RDB2NIMBRA_MODEL)
        set_target_properties(${target} PROPERTIES SYSTEM OFF)
        list(APPEND with_headers ${target})
      endif()
    endforeach()
  endforeach()
  rdb2nimbra_header_folders(model_folders ${RDB2NIMBRA_MODEL})
  list(REVERSE model_folders_TARGETS)
  foreach(target IN LISTS model_folders_TARGETS)
    if(target IN_LIST with_headers)
      target_include_directories(rdb2nimbra_headers BEFORE INTERFACE
        "$<BUILD_INTERFACE:$<TARGET_PROPERTY:${target},INTERFACE_INCLUDE_DIRECTORIES>>")
    endif()
  endforeach()
  set(rooms arrays/quillon arrays/nimbra include/rdb2nimbra loader/columns loader/timebase loader/waveform
    loader/pointcloud loader/trajectory)
  if(NOT TRANSFORMATION IN_LIST RDB2NIMBRA_REPLACED)
    list(APPEND rooms platform/transformation)
  endif()
  if(NOT CALENDAR IN_LIST RDB2NIMBRA_REPLACED)
    list(APPEND rooms platform/calendar)
  endif()
  set(looked_for "")
  foreach(room IN LISTS rooms)
    file(GLOB files RELATIVE ${PROJECT_SOURCE_DIR}
      ${PROJECT_SOURCE_DIR}/${room}/*.h ${PROJECT_SOURCE_DIR}/${room}/*.cpp)
    foreach(file IN LISTS files)
      file(STRINGS ${PROJECT_SOURCE_DIR}/${file} lines REGEX "^#include \"model/")
      list(TRANSFORM lines REPLACE ".*\"(.*)\".*" "\\1")
      list(REMOVE_ITEM lines ${looked_for} "")
      rdb2nimbra_missing_headers(MODEL ${file} ${lines})
      list(APPEND looked_for ${lines})
    endforeach()
  endforeach()
endif()
if(missing)
  message(FATAL_ERROR "Headers are missing, see docs/integration.md:\n${missing}")
endif()

# Links `target` to the chosen implementation of one interface (CLIENT, MODEL, TRANSFORMATION or CALENDAR), or to
# the embedded one, and defines for its sources which header to include.
function(rdb2nimbra_platform target interface embedded)
  set(chosen "${RDB2NIMBRA_${interface}}")
  if("${chosen}" STREQUAL "")
    set(chosen ${embedded})
  endif()
  get_target_property(kind ${target} TYPE)
  if(kind STREQUAL "INTERFACE_LIBRARY")
    set(scope INTERFACE)
  else()
    set(scope PUBLIC)
  endif()
  target_link_libraries(${target} ${scope} ${chosen})
  if(NOT "${RDB2NIMBRA_${interface}_HEADER}" STREQUAL "")
    target_compile_definitions(${target} ${scope}
      RDB2NIMBRA_${interface}_HEADER=\"${RDB2NIMBRA_${interface}_HEADER}\")
  endif()
endfunction()
