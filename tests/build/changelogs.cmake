# SPDX-License-Identifier: BSD-3-Clause
# Compares both changelogs with the project's version: cmake -DROOT= -DVERSION= -P changelogs.cmake
cmake_minimum_required(VERSION 3.25)
file(STRINGS ${ROOT}/CHANGELOG.md headings REGEX "^## ")
set(wanted FALSE)
set(above TRUE) # the first heading may name the next version
foreach(heading IN LISTS headings)
  if(NOT heading MATCHES "^## [0-9]+\\.[0-9]+\\.[0-9]+ \\([0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]\\)$"
      AND NOT (above AND heading MATCHES "^## [0-9]+\\.[0-9]+\\.[0-9]+ \\(not released\\)$"))
    message(FATAL_ERROR "CHANGELOG.md: expected a heading \"## VERSION (YYYY-MM-DD)\", found \"${heading}\"")
  endif()
  string(REPLACE "." "\\." escaped ${VERSION})
  if(heading MATCHES "^## ${escaped} ")
    set(wanted TRUE)
  endif()
  set(above FALSE)
endforeach()
if(NOT wanted)
  message(FATAL_ERROR "CHANGELOG.md: expected a section for version ${VERSION}, found ${headings}")
endif()

file(STRINGS ${ROOT}/packaging/debian/changelog first LIMIT_COUNT 1)
string(FIND "${first}" "rdb2nimbra (${VERSION}-1) " place)
if(NOT place EQUAL 0)
  message(FATAL_ERROR "packaging/debian/changelog: expected version ${VERSION}-1 in the first line, found \"${first}\"")
endif()
