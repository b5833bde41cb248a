// SPDX-License-Identifier: BSD-3-Clause
// Asks SQLite's virtual table `dbstat` for the pages, and their heads for the gap between cell pointers and cells.
// The layout of pages is described in https://www.sqlite.org/fileformat2.html
#include "tests/container/read/used_bytes.h"

#include "container/format/sqlite_file.h"
#include "tests/container/database_file.h"

#include <cstring>

namespace containertest {
namespace {

constexpr std::size_t fileHeadBytes = 100;

struct Page {
  std::size_t number = 0; ///< from 1 on
  bool isOverflow = false;
  bool isOfBlocks = false;
  std::size_t unused = 0;
};

int takeRow(void* pages, int, char** values, char**) {
  static_cast<std::vector<Page>*>(pages)->push_back(
      {std::stoul(values[0]), std::strcmp(values[1], "overflow") == 0, std::strcmp(values[2], "block") == 0,
       std::stoul(values[3])});
  return 0;
}

std::vector<Page> pagesOf(const std::string& path) {
  sqlite3* opened = nullptr;
  const int status = sqlite3_open(path.c_str(), &opened);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, &sqlite3_close);
  std::vector<Page> pages;
  if (status != SQLITE_OK || sqlite3_exec(opened, "SELECT pageno, pagetype, name, unused FROM dbstat",
                                          takeRow, &pages, nullptr) != SQLITE_OK) {
    throw std::runtime_error("cannot list the pages of " + path + ": " + sqlite3_errmsg(opened));
  }
  return pages;
}

void addRange(std::size_t first, std::size_t last, std::vector<std::size_t>& positions) {
  for (std::size_t at = first; at < last; ++at) {
    positions.push_back(at);
  }
}

} // namespace

UsedBytes usedBytesOf(const std::string& path) {
  const std::vector<char> bytes = bytesOf(path);
  const auto* const file = reinterpret_cast<const unsigned char*>(bytes.data());
  UsedBytes used;
  used.pageBytes = container::pageBytesIn(file);
  for (const Page& page : pagesOf(path)) {
    std::vector<std::size_t>& positions = page.isOfBlocks ? used.blocks : used.catalogue;
    const std::size_t start = (page.number - 1) * used.pageBytes;
    const std::size_t end = start + used.pageBytes;
    if (page.isOverflow) {
      addRange(start, end - page.unused, positions);
      continue;
    }
    const std::size_t head = start + (page.number == 1 ? fileHeadBytes : 0);
    const bool isLeaf = file[head] == 10 || file[head] == 13;
    addRange(start, head + (isLeaf ? 8 : 12) + 2 * container::bigEndian(file + head + 3, 2), positions);
    addRange(start + container::bigEndian(file + head + 5, 2), end, positions);
  }
  return used;
}

} // namespace containertest
