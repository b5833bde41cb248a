// SPDX-License-Identifier: BSD-3-Clause
// Any text as a lever-arm file: it gives both vectors or none.
#include "loader/trajectory/lever_arm.h"

#include "model/torvel/references/chunk.h"
#include "tests/fuzz/input_file.h"

#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const Torvel::StrongPtr<Nimbra::Grid, Nimbra::Grid::Family> grid = new Nimbra::Grid;
  bool read = false;
  try {
    read = Riegl::addLeverArm_Misalignment(*grid, fuzz::inputFile(bytes, count)).empty();
  } catch (const std::invalid_argument& error) {
    fuzz::require(std::string(error.what()) == "stod", "only a number can raise");
  } catch (const std::out_of_range& error) {
    fuzz::require(std::string(error.what()) == "stod", "only a number can raise");
  }
  for (const char* name : {"LeverArm", "Misalignment"}) {
    const Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> vector(
        grid->attributes().getAttribute(name));
    fuzz::require(static_cast<bool>(vector) == read, "both vectors or neither");
    fuzz::require(!vector || vector->size() == 3, "a vector has three components");
  }
  return 0;
}
