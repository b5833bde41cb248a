// SPDX-License-Identifier: BSD-3-Clause
// Loads a database and prints the names of its fields with their element counts, and the first amplitude as a
// number: consumer FILE
#include <rdb2nimbra/rdb2nimbra.h>
#include <rdb2nimbra/version.h>

#include "arrays/nimbra/mem_array.h"

#include <iostream>

static_assert(RDB2NIMBRA_VERSION_MAJOR == 1, "the major version that the programs of this test ask for");

int main(int argumentCount, char** arguments) {
  Torvel::StrongPtr<Nimbra::Grid, Nimbra::Grid::Family> grid = new Nimbra::Grid;
  const std::string failure = Riegl::rdbx2Z4(argumentCount > 1 ? arguments[1] : "", *grid, 0, false, {});
  for (const auto& representation : grid->representations()) {
    for (const auto& slot : representation->fields()) {
      const auto array = slot.field->array("Fragment_0");
      std::cout << slot.identity->name() << ' ' << (array ? array->elementCount() : 0) << '\n';
      const Torvel::StrongPtr<Nimbra::TypedArray<float>, Torvel::Cacheable> numbers = array;
      if (numbers && slot.identity->name() == "Amplitude") {
        std::cout << "First amplitude at its place: " << (numbers->elements()->data == numbers->rawData())
                  << '\n';
      }
    }
  }
  std::cout << "Version " RDB2NIMBRA_VERSION "\n";
  std::cerr << failure;
  return failure.empty() ? 0 : 1;
}
