# SPDX-License-Identifier: BSD-3-Clause
# Compares what rdb-conformance prints, writes and returns for clients with flaws with what is expected:
#   cmake -DPROGRAM=<rdb-conformance-broken> -DFOLDER=<own folder> -P program.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})

function(expect flaw status expected) # further arguments of the program
  set(ENV{RDB_CONFORMANCE_FLAW} "${flaw}")
  execute_process(COMMAND ${PROGRAM} ${ARGN} RESULT_VARIABLE found OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT found EQUAL status OR NOT "${output}${errors}" STREQUAL expected)
    message(FATAL_ERROR "${ARGN} with the flaw \"${flaw}\": expected status ${status} and\n${expected}\nfound ${found} and\n"
      "${output}${errors}")
  endif()
endfunction()

function(expect_junit flaw expected)
  file(READ ${FOLDER}/junit.xml text)
  string(REGEX REPLACE "time=\"[0-9.e-]+\"" "time=\"\"" text "${text}")
  if(NOT text STREQUAL expected)
    message(FATAL_ERROR "JUnit XML with the flaw \"${flaw}\": expected\n${expected}\nfound\n${text}")
  endif()
endfunction()

set(names NextNeverReturnsMoreThanAsked CopiesOfAQueryShareThePosition NextReturnsAsManyAsAsked)
expect("" 0 "pass  NextNeverReturnsMoreThanAsked
pass  CopiesOfAQueryShareThePosition
pass  NextReturnsAsManyAsAsked
3 promises: 3 kept, 0 broken
" --junit ${FOLDER}/junit.xml ${names})
expect_junit("" "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<testsuite name=\"rdb-conformance\" tests=\"3\" failures=\"0\" errors=\"0\" skipped=\"0\" time=\"\">
  <testcase classname=\"rdb-conformance\" name=\"NextNeverReturnsMoreThanAsked\" time=\"\"/>
  <testcase classname=\"rdb-conformance\" name=\"CopiesOfAQueryShareThePosition\" time=\"\"/>
  <testcase classname=\"rdb-conformance\" name=\"NextReturnsAsManyAsAsked\" time=\"\"/>
</testsuite>
")

# A failed check, an exception and a process that ends are findings.
expect(halfOfTheCountIsRead 1 "pass  NextNeverReturnsMoreThanAsked
FAIL  CopiesOfAQueryShareThePosition
        expected  next(7) of the copy: 7
        found     4
FAIL  NextReturnsAsManyAsAsked
        expected  next(124): 124
        found     62
3 promises: 1 kept, 2 broken
" ${names} --junit ${FOLDER}/junit.xml)
expect_junit(halfOfTheCountIsRead "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<testsuite name=\"rdb-conformance\" tests=\"3\" failures=\"2\" errors=\"0\" skipped=\"0\" time=\"\">
  <testcase classname=\"rdb-conformance\" name=\"NextNeverReturnsMoreThanAsked\" time=\"\"/>
  <testcase classname=\"rdb-conformance\" name=\"CopiesOfAQueryShareThePosition\" time=\"\">
    <failure message=\"expected next(7) of the copy: 7, found 4\">Copies of a query are the same query.</failure>
  </testcase>
  <testcase classname=\"rdb-conformance\" name=\"NextReturnsAsManyAsAsked\" time=\"\">
    <failure message=\"expected next(124): 124, found 62\">`next(count)` returns `count` as long as so many records are left.</failure>
  </testcase>
</testsuite>
")
expect(emptyDatabaseRaises 1 "FAIL  DatabaseWithoutRecordsEndsAtOnce
        expected  no exception
        found     riegl::rdb::Error: no records (query)
1 promises: 0 kept, 1 broken
" DatabaseWithoutRecordsEndsAtOnce)
expect(queryNeedsItsDatabase 1 "FAIL  ObjectsEndInAnyOrder
        expected  the check runs to its end
        found     the process ended with status 3
1 promises: 0 kept, 1 broken
" ObjectsEndInAnyOrder)
expect(bindIsKilled 1 "FAIL  BindAloneWritesNothing
        expected  the check runs to its end
        found     the process ended by signal 9 (Killed)
1 promises: 0 kept, 1 broken
" BindAloneWritesNothing)
expect(oneByteTooMuch 1 "FAIL  NothingIsWrittenBehindTheLastRecord
        expected  nothing is written outside the first 5 records of the buffer (5 bytes)
        found     byte 5 counted from the buffer's start is written
1 promises: 0 kept, 1 broken
" NothingIsWrittenBehindTheLastRecord)
expect(itemsEndAt64K 1 "FAIL  LongMetadataComesWhole
        expected  length of the item: 1000038
        found     65536
1 promises: 0 kept, 1 broken
" LongMetadataComesWhole)

# Wrong use.
set(usage "rdb-conformance [--junit FILE] [PROMISE...]   checks all promises, or those named
rdb-conformance --list                        prints the promises
")
expect("" 2 "expected the name of a promise (see --list), found \"NextIsFast\"\n${usage}" NextIsFast)
expect("" 2 "expected a file after --junit, found nothing\n${usage}" --junit)
expect("" 2 "rdb-conformance: cannot write ${FOLDER}/absent/junit.xml\n" --junit ${FOLDER}/absent/junit.xml)
file(REMOVE_RECURSE ${FOLDER})
