# SPDX-License-Identifier: BSD-3-Clause
# Builds a program of somebody else's from an installed tree with pkg-config and nothing else, and runs it:
#   cmake -DPREFIX=<installed tree> -DLIBRARIES=<its folder of libraries> -DCONSUMER=<sources> -DFOLDER=<own folder>
#     -DPKG_CONFIG=.. -DCOMPILER=.. -DFLAGS=.. -DVERSION=.. -P pkg-config.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
set(pkg_config ${CMAKE_COMMAND} -E env PKG_CONFIG_LIBDIR=${LIBRARIES}/pkgconfig PKG_CONFIG_PATH= ${PKG_CONFIG})
file(GLOB packages ${LIBRARIES}/pkgconfig/*.pc)
foreach(package IN LISTS packages)
  get_filename_component(name ${package} NAME_WE)
  run("pkg-config" ${pkg_config} --modversion ${name})
  if(NOT output STREQUAL "${VERSION}\n")
    message(FATAL_ERROR "${name}.pc: expected version ${VERSION}, found ${output}")
  endif()
endforeach()

run("pkg-config" ${pkg_config} --cflags rdb2nimbra)
separate_arguments(includes UNIX_COMMAND "${output}")
set(folders "")
foreach(include IN LISTS includes)
  if(NOT include MATCHES "^-I(.*)$")
    message(FATAL_ERROR "rdb2nimbra.pc: expected include folders alone, found ${include}")
  endif()
  cmake_path(SET folder NORMALIZE ${CMAKE_MATCH_1})
  list(APPEND folders ${folder})
endforeach()
if(NOT folders STREQUAL "${PREFIX}/include;${PREFIX}/include/rdb2nimbra")
  message(FATAL_ERROR "Expected include and include/rdb2nimbra of the moved tree, found ${folders}")
endif()
run("pkg-config" ${pkg_config} --libs rdb2nimbra)
separate_arguments(links UNIX_COMMAND "${output}")
run("Building the consumer" ${COMPILER} -std=c++20 ${FLAGS} ${includes} ${CONSUMER}/main.cpp -o ${FOLDER}/consumer
  ${links})

set(database ${FOLDER}/scan.rdbx)
run("The installed rdbtool" ${PREFIX}/bin/rdbtool synth scan --records 1000 --seed 5 -o ${database})
run("The consumer" ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${LIBRARIES} ${FOLDER}/consumer ${database})
if(NOT output MATCHES "(^|\n)Positions 1000\n.*Version ${VERSION}\n")
  message(FATAL_ERROR "Expected 1000 positions and version ${VERSION}, found\n${output}")
endif()
file(REMOVE_RECURSE ${FOLDER})
