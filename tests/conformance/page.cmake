# SPDX-License-Identifier: BSD-3-Clause
# Compares docs/integration.md with the promises and with the adapter that the build compiles:
#   cmake -DPROGRAM=<rdb-conformance> -DROOT=<sources> -P page.cmake
cmake_minimum_required(VERSION 3.25)
file(READ ${ROOT}/docs/integration.md page)

function(expect_on_page what text)
  string(FIND "${page}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "docs/integration.md does not have ${what}; put this into it:\n${text}")
  endif()
endfunction()

execute_process(COMMAND ${PROGRAM} --list OUTPUT_VARIABLE promises COMMAND_ERROR_IS_FATAL ANY)
expect_on_page("the promises of `rdb-conformance --list`" "### The promises of a client

Every rule that the library relies on has a name. `rdb-conformance` checks them all against a client:

${promises}
### ")
string(REGEX MATCHALL "\n\\| [A-Z]" rows "${promises}") # the row of headings has no line feed before it
list(LENGTH rows count)
math(EXPR kept "${count} - 1")
expect_on_page("the total of the sample output" "\n${count} promises: ${kept} kept, 1 broken\n")
file(READ ${ROOT}/tests/conformance/in_memory_adapter.cpp adapter)
expect_on_page("the adapter tests/conformance/in_memory_adapter.cpp" "```cpp\n${adapter}```\n")
file(READ ${ROOT}/conformance/contents.h header)
string(REGEX MATCH "namespace conformance {.*} // namespace conformance\n" description "${header}")
if(description STREQUAL "")
  message(FATAL_ERROR "conformance/contents.h: expected a namespace conformance, found none")
endif()
expect_on_page("the declarations of conformance/contents.h" "```cpp\n${description}```\n")
