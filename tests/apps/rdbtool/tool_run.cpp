// SPDX-License-Identifier: BSD-3-Clause
// Runs the tool's command line inside a test, or any program outside it.
#include "tests/apps/rdbtool/tool_run.h"

#include "apps/rdbtool/command_line.h"
#include "tests/support/file_content.h"

#include <cstdlib>
#include <sstream>
#include <sys/wait.h>

namespace support {

namespace {

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char letter : text) {
    result += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
  }
  return result + "'";
}

} // namespace

Run runTool(const std::vector<std::string>& arguments) {
  std::vector<const char*> pointers = {"rdbtool"};
  for (const std::string& argument : arguments) {
    pointers.push_back(argument.c_str());
  }
  std::ostringstream out;
  std::ostringstream err;
  const int status = rdbtool::runTool(static_cast<int>(pointers.size()), pointers.data(), out, err);
  return {status, out.str(), err.str()};
}

Run runProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& folder) {
  std::string command = quoted(program);
  for (const std::string& argument : arguments) {
    command += " " + quoted(argument);
  }
  const std::string out = folder + "/run.out";
  const std::string err = folder + "/run.err";
  const int state = std::system((command + " >" + quoted(out) + " 2>" + quoted(err)).c_str());
  return {WIFEXITED(state) ? WEXITSTATUS(state) : -1, contentOf(out), contentOf(err)};
}

} // namespace support
