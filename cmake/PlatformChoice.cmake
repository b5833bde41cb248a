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

# Another data model has headers of the same names. Its folders come before the project's own, and it must have every
# header of those rooms that the library includes, so that no declaration of the embedded model is taken for one of the replacement.
if(MODEL IN_LIST RDB2NIMBRA_REPLACED)
  # A folder of an imported target would be searched after all others.
  set_target_properties(${RDB2NIMBRA_MODEL} PROPERTIES SYSTEM OFF)
  get_target_property(model_folders ${RDB2NIMBRA_MODEL} INTERFACE_INCLUDE_DIRECTORIES)
  target_include_directories(rdb2nimbra_headers BEFORE INTERFACE "$<BUILD_INTERFACE:${model_folders}>")
  set(users "")
  foreach(room arrays/quillon arrays/nimbra platform/transformation include/rdb2nimbra loader/columns loader/timebase loader/waveform loader/pointcloud loader/trajectory)
    file(GLOB files ${PROJECT_SOURCE_DIR}/${room}/*.h ${PROJECT_SOURCE_DIR}/${room}/*.cpp)
    list(APPEND users ${files})
  endforeach()
  foreach(file IN LISTS users)
    file(STRINGS ${file} lines REGEX "^#include \"model/")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE ".*\"(.*)\".*" "\\1" header "${line}")
      unset(found CACHE)
      find_path(found ${header} PATHS ${model_folders} NO_DEFAULT_PATH NO_CACHE)
      if(NOT found)
        message(FATAL_ERROR "RDB2NIMBRA_MODEL: ${RDB2NIMBRA_MODEL} has no header ${header} in ${model_folders}; "
          "${file} includes it")
      endif()
      unset(found)
    endforeach()
  endforeach()
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
