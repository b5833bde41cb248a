# SPDX-License-Identifier: BSD-3-Clause
# Builds the library with every part of its platform replaced and checks the result:
#   cmake -DROOT=<sources> -DFOLDER=<own folder> -DCOMPILER=.. -DNINJA=.. -DREADELF=.. -P replacement.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

set(common -G Ninja -DCMAKE_MAKE_PROGRAM=${NINJA} -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_BUILD_TYPE=Debug
  -DCMAKE_CXX_FLAGS=-O0 -DCMAKE_CXX_FLAGS_DEBUG=)
file(REMOVE_RECURSE ${FOLDER})
# Outside the sources, so that run paths do not lead into the project itself.
run("Making a folder for the platform" mktemp -d)
string(STRIP "${output}" away)
run("Configuring the platform" ${CMAKE_COMMAND} -S ${ROOT}/tests/replacement -B ${away}/platform ${common}
  -DROOT=${ROOT})
run("Building the platform" ${CMAKE_COMMAND} --build ${away}/platform -j 2)

set(choice -DCMAKE_PREFIX_PATH=${away}/platform
  -DRDB2NIMBRA_CLIENT=replacement::client -DRDB2NIMBRA_CLIENT_HEADER=replacement/client.h
  -DRDB2NIMBRA_MODEL=replacement::model
  -DRDB2NIMBRA_TRANSFORMATION=replacement::transformation
  -DRDB2NIMBRA_TRANSFORMATION_HEADER=replacement/transformation.h
  -DRDB2NIMBRA_CALENDAR=replacement_calendar -DRDB2NIMBRA_CALENDAR_HEADER=replacement/calendar.h)

function(refuses text) # further arguments of the configure step
  execute_process(COMMAND ${CMAKE_COMMAND} -S ${ROOT} -B ${FOLDER}/refused ${common} ${choice} ${ARGN}
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE found)
  string(REGEX REPLACE "[ \n]+" " " found "${found}")
  string(FIND "${found}" "${text}" at)
  if(status EQUAL 0 OR at EQUAL -1)
    message(FATAL_ERROR "Expected a refusal with \"${text}\", found status ${status} and \"${found}\"")
  endif()
  set(refusal "${found}" PARENT_SCOPE)
endfunction()
# Programs that need the embedded platform, and a data model that is not a whole one.
refuses("RDB2NIMBRA_TOOLS need the embedded platform" -DRDB2NIMBRA_TOOLS=ON)
# A part without the header that declares it, a header without its part, and a library's path.
refuses("RDB2NIMBRA_CLIENT is set (replacement::client), and RDB2NIMBRA_CLIENT_HEADER is not"
  -DRDB2NIMBRA_CLIENT_HEADER=)
refuses("RDB2NIMBRA_CALENDAR_HEADER is set (replacement/calendar.h), and RDB2NIMBRA_CALENDAR is not"
  -DRDB2NIMBRA_CALENDAR=)
refuses("RDB2NIMBRA_TRANSFORMATION: expected a target or a package, found the path /lib/libproj.so"
  -DRDB2NIMBRA_TRANSFORMATION=/lib/libproj.so)
# All missing headers are in one list, each with the part that lacks it and the file that includes it.
set(headers model/torvel/objects/console.h model/nimbra/type_base.h)
foreach(header IN LISTS headers)
  file(RENAME ${away}/platform/model/${header} ${away}/platform/model/${header}.away)
endforeach()
set(here ${ROOT}/tests/replacement)
refuses("RDB2NIMBRA_CLIENT: replacement::client has no header scanner/rdb.h in \"${here};${away}/platform/model\"; include/rdb2nimbra/client.h includes it"
  -DRDB2NIMBRA_CLIENT_HEADER=scanner/rdb.h -DRDB2NIMBRA_TRANSFORMATION_HEADER=scanner/proj.h
  -DRDB2NIMBRA_CALENDAR_HEADER=scanner/days.h)
set(folder "\"${away}/platform/model\"")
foreach(text
    "RDB2NIMBRA_TRANSFORMATION: replacement::transformation has no header scanner/proj.h in \"${here}\"; loader/trajectory/projection.h includes it"
    "RDB2NIMBRA_CALENDAR: replacement_calendar has no header scanner/days.h in \"${here}\"; loader/timebase/calendar.h includes it"
    "RDB2NIMBRA_MODEL: replacement::model has no header model/nimbra/type_base.h in ${folder}; arrays/nimbra/element_records.h includes it"
    "RDB2NIMBRA_MODEL: replacement::model has no header model/torvel/objects/console.h in ${folder}; loader/timebase/date.cpp includes it")
  string(FIND "${refusal}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "Expected \"${text}\" in the refusal, found \"${refusal}\"")
  endif()
endforeach()
foreach(header IN LISTS headers)
  file(RENAME ${away}/platform/model/${header}.away ${away}/platform/model/${header})
endforeach()

run("Configuring the library" ${CMAKE_COMMAND} -S ${ROOT} -B ${FOLDER}/library ${common} ${choice}
  -DCMAKE_SHARED_LINKER_FLAGS=-Wl,--no-undefined -DRDB2NIMBRA_TOOLS=OFF -DRDB2NIMBRA_TESTS=OFF
  -DRDB2NIMBRA_BENCHMARKS=OFF)
run("Building the library" ${CMAKE_COMMAND} --build ${FOLDER}/library -j 2)

file(GLOB built RELATIVE ${FOLDER}/library/lib ${FOLDER}/library/lib/*.so)
if(NOT built STREQUAL "librdb2nimbra.so")
  message(FATAL_ERROR "Expected the library alone and nothing embedded, found ${built}")
endif()
run("Looking at the library" ${CMAKE_COMMAND} -DREADELF=${READELF} -DLIBRARY=${FOLDER}/library/lib/librdb2nimbra.so
  -DEXPECTED=libQt5Core.so.5,libreplacement_calendar.so,libreplacement_client.so,libreplacement_model.so,libreplacement_transformation.so
  -P ${CMAKE_CURRENT_LIST_DIR}/needed-libraries.cmake)

# No source was compiled with a header of the embedded parts.
run("Reading the dependencies" ${NINJA} -C ${FOLDER}/library -t deps)
# Paths may be absolute or relative.
string(REGEX MATCHALL "[^ \n]*(platform/[a-z]+|container|model)/[^\n]*\\.h" embedded "${output}")
set(other ${embedded})
list(FILTER other INCLUDE REGEX "platform/model/model/nimbra/grid\\.h$")
list(FILTER embedded EXCLUDE REGEX "platform/model/")
list(REMOVE_DUPLICATES embedded)
if(embedded OR NOT other)
  message(FATAL_ERROR "Expected headers of the replaced platform only, found ${embedded}")
endif()

# What is installed leads to the replacements.
run("Installing" ${CMAKE_COMMAND} --install ${FOLDER}/library --prefix ${FOLDER}/prefix)
file(GLOB_RECURSE package ${FOLDER}/prefix/*/rdb2nimbra-config.cmake)
file(READ ${package} text)
if(NOT text MATCHES "replacement replacement_calendar|replacement;replacement_calendar")
  message(FATAL_ERROR "The installed package does not look for the replacements:\n${text}")
endif()
file(GLOB library ${FOLDER}/prefix/*/librdb2nimbra.so)
run("Reading the run-time path" ${READELF} -dW ${library})
if(NOT output MATCHES "\\[\\$ORIGIN:${away}/platform\\]")
  message(FATAL_ERROR "The installed library does not look for the replacements in ${away}/platform:\n${output}")
endif()
# A consumer without CMake needs include folders and no definition.
file(WRITE ${FOLDER}/consumer.cpp "#include <rdb2nimbra/rdb2nimbra.h>\n"
  "using scripted::script; // of the replaced client\nint main() { Riegl::parseDate(\"\"); }\n")
cmake_path(GET library PARENT_PATH libraries)
set(replaced ${away}/platform)
run("Compiling a consumer by hand" ${COMPILER} -std=c++20 ${FOLDER}/consumer.cpp -o ${FOLDER}/consumer
  -I${replaced}/model -I${ROOT}/tests/replacement -I${FOLDER}/prefix/include -I${FOLDER}/prefix/include/rdb2nimbra
  -I${ROOT} -L${libraries} -lrdb2nimbra -Wl,-rpath,${libraries} -Wl,-rpath-link,${replaced})
run("Running the consumer" ${FOLDER}/consumer)
if(EXISTS ${FOLDER}/prefix/include/rdb2nimbra/platform)
  message(FATAL_ERROR "Headers of the embedded platform were installed beside a replaced one")
endif()
file(REMOVE_RECURSE ${FOLDER} ${away})
