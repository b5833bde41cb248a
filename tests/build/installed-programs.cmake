# SPDX-License-Identifier: BSD-3-Clause
# Runs the installed programs, which have no proj.db beside them:
#   cmake -DPREFIX=<installed tree> -DFOLDER=<own folder> -P installed-programs.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
set(bin ${PREFIX}/bin)
run("The installed rdbtool" ${bin}/rdbtool synth scan --records 1000 --seed 5 -o ${FOLDER}/scan.rdbx)
run("The installed nimbra-host" ${bin}/nimbra-host load ${FOLDER}/scan.rdbx --json)
run("The installed rdbtool" ${bin}/rdbtool synth trajectory --records 1000 --seed 5 -o ${FOLDER}/flight.pofx)
run("The installed nimbra-host" ${bin}/nimbra-host load ${FOLDER}/flight.pofx --epsg 32633)
file(REMOVE_RECURSE ${FOLDER})
