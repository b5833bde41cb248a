// SPDX-License-Identifier: BSD-3-Clause
// Loads a scan and prints its columns: load_scan FILE
#include <rdb2nimbra/rdb2nimbra.h>

#include <iostream>

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "load_scan FILE\n";
    return 2;
  }
  Torvel::StrongPtr<Nimbra::Grid, Nimbra::Grid::Family> grid = new Nimbra::Grid;
  const std::string failure = Riegl::rdbx2Z4(arguments[1], *grid, 0, true, {});
  for (const auto& chart : grid->representations()) {
    for (const auto& [identity, field] : chart->fields()) {
      for (const auto& piece : field->fragments()) {
        std::cout << identity->name() << " begins with " << piece.array()->elementText(0) << '\n';
      }
    }
  }
  std::cerr << failure;
  return failure.empty() ? 0 : 1;
}
