// SPDX-License-Identifier: BSD-3-Clause
// Makes the databases of a check.
#include "conformance/databases.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

namespace conformance {

std::string Databases::make(const Contents& contents, const std::string& name) {
  const std::string folder = root + "/" + name + "_" + std::to_string(made++);
  std::filesystem::create_directory(folder);
  return makeDatabase(contents, folder);
}

std::string Databases::makePattern(std::uint64_t records) {
  return make({records,
               {patternColumn("riegl.class", records), patternColumn("riegl.xyz", records, 3),
                patternColumn("riegl.rgba", records, 4), patternColumn("own.name", records)},
               {}});
}

std::string Databases::makeFile(const std::string& name, const std::string& content) const {
  std::ofstream(root + "/" + name, std::ios::binary) << content;
  return root + "/" + name;
}

void expectWholePattern(Load& load, const std::string& column, std::uint64_t records, unsigned block,
                        std::uint64_t first) {
  std::uint64_t position = 0;
  std::unique_ptr<GuardedBuffer<double>>
      previous; // stays until the next one is there, so that their places differ
  for (;;) {
    auto buffer = std::make_unique<GuardedBuffer<double>>(block);
    GuardedBuffer<double>& fresh = *buffer;
    load.bind(column, fresh);
    const unsigned count = load.query.next(block);
    expect(count <= block, "next(" + text(block) + "): at most " + text(block), text(count));
    if (count == 0) {
      break;
    }
    fresh.expectPattern(first + position, count);
    fresh.expectUntouchedBehind(count);
    position += count;
    previous = std::move(buffer);
    expect(position <= records, "records in all: " + text(records), "more than that");
  }
  expectEqual("records in all", position, records);
}

} // namespace conformance
