// SPDX-License-Identifier: BSD-3-Clause
// Loads a trajectory and prints the result: load_program FILE EPSG.
#include <rdb2nimbra/rdb2nimbra.h>

#include <cstdio>
#include <cstdlib>

int main(int count, char** arguments) {
  if (count != 3) {
    return 2;
  }
  Nimbra::Grid grid;
  const std::string result =
      Riegl::pofx2nimbra(arguments[1], grid, std::atoi(arguments[2]), Riegl::ChunkCallback(), "", nullptr);
  std::printf("%s", result.c_str());
  return result.empty() ? 0 : 1;
}
