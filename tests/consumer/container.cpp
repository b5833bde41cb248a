// SPDX-License-Identifier: BSD-3-Clause
// Writes a database with the container's library alone and reads it back: container FILE
#include "container/read/cursor.h"
#include "container/write/writer.h"

#include <iostream>

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    return 2;
  }
  const double written[] = {1.5, -2.25, 1e300};
  container::Writer writer(arguments[1]);
  container::Attribute attribute;
  attribute.name = "riegl.amplitude";
  writer.addAttribute(attribute);
  writer.write(3, {written});
  writer.finish();

  double read[3] = {};
  const container::Database database(arguments[1]);
  container::Cursor cursor(database);
  cursor.bind("riegl.amplitude", container::ElementType::float64, read);
  std::cout << cursor.next(3) << " records: " << read[0] << ' ' << read[1] << ' ' << read[2] << '\n';
}
