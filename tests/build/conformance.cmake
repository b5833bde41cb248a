# SPDX-License-Identifier: BSD-3-Clause
# Installs the build and checks another project's client with the installed promises, by the package and by hand:
#   cmake -DBUILD=<build folder> -DROOT=<sources> -DFOLDER=<own folder> -DCOMPILER=.. -DGENERATOR=..
#     -DCONFIGURATION=.. -P conformance.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${FOLDER})
run("cmake --install" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}/first --config ${CONFIGURATION})
# The installed tree is moved, so that no path of this build can help it.
file(RENAME ${FOLDER}/first ${FOLDER}/prefix)

# The in-memory client, in a place of its own.
set(client ${FOLDER}/client)
foreach(header bench/in_memory/rdb.h bench/in_memory/database.h
    tests/support/attribute_length.h tests/support/element_conversion.h)
  get_filename_component(folder ${header} DIRECTORY)
  file(COPY ${ROOT}/${header} DESTINATION ${client}/${folder})
endforeach()
file(COPY ${ROOT}/tests/conformance/in_memory_adapter.cpp ${ROOT}/tests/consumer/conformance/CMakeLists.txt
  DESTINATION ${FOLDER}/source)

set(configure ${CMAKE_COMMAND} -S ${FOLDER}/source -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${FOLDER}/prefix
  -DCMAKE_CXX_COMPILER=${COMPILER} -DCLIENT=${client} -DADAPTER=in_memory_adapter.cpp)
execute_process(COMMAND ${configure} -B ${FOLDER}/refused -DFURTHER=further
  RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE refusal)
string(REGEX REPLACE "[ \n]+" " " refusal "${refusal}")
if(status EQUAL 0 OR NOT refusal MATCHES "rdb2nimbra_add_conformance\\(my-conformance\\): .*further arguments further")
  message(FATAL_ERROR "Expected a refusal of the further argument, found status ${status} and:\n${refusal}")
endif()
run("The consumer's configure step" ${configure} -B ${FOLDER}/build)
run("The consumer's build" ${CMAKE_COMMAND} --build ${FOLDER}/build -j 2)
run("The consumer's test" ${CMAKE_CTEST_COMMAND} --test-dir ${FOLDER}/build --output-on-failure)
file(READ ${FOLDER}/build/conformance.xml junit)
string(REGEX MATCHALL "<testcase " cases "${junit}")
list(LENGTH cases count)
if(count EQUAL 0 OR NOT junit MATCHES "tests=\"${count}\" failures=\"0\"")
  message(FATAL_ERROR "Expected a test case per promise and no failure, found ${count} cases in\n${junit}")
endif()

# A compiler and the client are enough.
file(GLOB sources ${FOLDER}/prefix/share/rdb2nimbra/conformance/*.cpp)
run("The compiler" ${COMPILER} -std=c++20 -pthread -I${FOLDER}/prefix/share/rdb2nimbra -I${client}
  -DRDB2NIMBRA_CLIENT_HEADER="bench/in_memory/rdb.h" ${sources} ${FOLDER}/source/in_memory_adapter.cpp
  -o ${FOLDER}/my-conformance)
run("The program made by hand" ${FOLDER}/my-conformance)
if(NOT output MATCHES "\n${count} promises: ${count} kept, 0 broken\n$")
  message(FATAL_ERROR "Expected ${count} kept promises, found\n${output}")
endif()
file(REMOVE_RECURSE ${FOLDER})
