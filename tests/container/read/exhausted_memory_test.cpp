// SPDX-License-Identifier: BSD-3-Clause
// A read on several threads with allocation k failing, for every k, returns the records or raises std::bad_alloc.
#include "tests/container/database_file.h"
#include "tests/support/failing_allocator.h"

#include <new>
#include <numeric>

namespace {

using namespace containertest;

constexpr unsigned records = 2'000'000;

/// A column large enough for several threads to read it, in few blocks.
class ExhaustedMemory : public testing::TestWithParam<container::BlockEncoding> {
 protected:
  void SetUp() override {
    std::iota(numbers.begin(), numbers.end(), 0);
    writeColumn(path, {"number", ElementType::float64}, numbers, {blockRows(), true, 2, GetParam()});
  }

  /// An encoded block is divided among the threads.
  static std::uint32_t blockRows() {
    return GetParam() == container::BlockEncoding::raw ? 200'000 : 1'000'000;
  }

  /// Reads all records; the allocation after the first `successes` fails. \return whether memory was enough
  bool readsWith(long successes) {
    Cursor cursor(Database(path, 4));
    cursor.bind("number", ElementType::float64, found.data());
    support::beginAllocations(successes);
    bool enough = true;
    try {
      cursor.next(records);
    } catch (const std::bad_alloc&) {
      enough = false;
    }
    support::endAllocations();
    return enough;
  }

  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<double> numbers = std::vector<double>(records);
  std::vector<double> found = std::vector<double>(records);
};

TEST_P(ExhaustedMemory, EndsAReadOnSeveralThreadsWithItsRecordsOrAnException) {
  ASSERT_TRUE(readsWith(-1));
  const long allocations = support::allocationsMade();
  ASSERT_GT(allocations, 3);
  for (long k = 0; k < allocations; ++k) {
    std::fill(found.begin(), found.end(), -1.0);
    EXPECT_TRUE(!readsWith(k) || found == numbers) << "at allocation " << k << " of " << allocations;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, ExhaustedMemory,
                         testing::Values(container::BlockEncoding::raw, container::BlockEncoding::lz4));

} // namespace
