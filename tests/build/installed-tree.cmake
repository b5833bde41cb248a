# SPDX-License-Identifier: BSD-3-Clause
# Installs the build into a folder of its own, moves the tree, and checks where its files are; other checks use the tree:
#   cmake -DBUILD=<build folder> -DFOLDER=<own folder> -DLIST=<public-headers.txt> -DCONFIGURATION=.. -P installed-tree.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${FOLDER})
run("cmake --install" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}/first --config ${CONFIGURATION})
# A package is made of components: a file in none of them would be in no package.
foreach(component runtime development tools)
  run("cmake --install --component" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}/components
    --config ${CONFIGURATION} --component ${component})
endforeach()
file(GLOB_RECURSE whole RELATIVE ${FOLDER}/first ${FOLDER}/first/*)
file(GLOB_RECURSE in_components RELATIVE ${FOLDER}/components ${FOLDER}/components/*)
list(REMOVE_ITEM whole ${in_components})
if(whole OR NOT in_components)
  message(FATAL_ERROR "Expected every installed file in a component (runtime, development, tools), found in none: ${whole}")
endif()
file(REMOVE_RECURSE ${FOLDER}/components)
# The tree is moved, so that no path of this build can help it.
file(RENAME ${FOLDER}/first ${FOLDER}/prefix)

# Headers: the listed ones in one folder, and nothing else.
file(STRINGS ${LIST} expected)
list(TRANSFORM expected REPLACE "^include/rdb2nimbra/" "")
list(TRANSFORM expected PREPEND "rdb2nimbra/")
file(GLOB_RECURSE headers RELATIVE ${FOLDER}/prefix/include ${FOLDER}/prefix/include/*)
list(SORT expected)
list(SORT headers)
if(NOT headers STREQUAL expected)
  message(FATAL_ERROR "Expected in include: ${expected}\nFound: ${headers}")
endif()
list(TRANSFORM headers REPLACE "^(rdb2nimbra/(platform/)?[^/]+).*" "\\1" OUTPUT_VARIABLE places)
list(REMOVE_DUPLICATES places)
set(open arrays client.h container export.h model platform/client rdb2nimbra.h version.h)
list(TRANSFORM open PREPEND "rdb2nimbra/")
if(NOT places STREQUAL open)
  message(FATAL_ERROR "Expected ${open}\nFound: ${places}")
endif()

file(GLOB programs RELATIVE ${FOLDER}/prefix/bin ${FOLDER}/prefix/bin/*)
if(NOT programs STREQUAL "nimbra-host;rdbtool")
  message(FATAL_ERROR "Expected nimbra-host and rdbtool alone in bin, found ${programs}")
endif()
file(GLOB_RECURSE data ${FOLDER}/prefix/proj.db)
if(data)
  message(FATAL_ERROR "Expected no copy of PROJ's database, found ${data}")
endif()
