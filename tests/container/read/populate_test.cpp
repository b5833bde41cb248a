// SPDX-License-Identifier: BSD-3-Clause
// Pages allocated before they are written: those of the bytes and no others, content unchanged.
#include "container/read/populate.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

using container::populate;

const auto pageBytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));

/// Fresh pages, none of them resident yet.
class FreshPages {
 public:
  explicit FreshPages(std::size_t pages)
      : count(pages),
        place(mmap(nullptr, count * pageBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    madvise(place, count * pageBytes, MADV_NOHUGEPAGE);
  }
  FreshPages(const FreshPages&) = delete;
  FreshPages& operator=(const FreshPages&) = delete;
  ~FreshPages() { munmap(place, count * pageBytes); }

  unsigned char* bytes() const { return static_cast<unsigned char*>(place); }
  std::vector<unsigned char> present() const {
    std::vector<unsigned char> flags(count);
    mincore(place, count * pageBytes, flags.data());
    return flags;
  }

 private:
  std::size_t count;
  void* place;
};

bool kernelPopulates() {
#if RDB2NIMBRA_POPULATE_PAGES && defined(MADV_POPULATE_WRITE)
  const FreshPages pages(1);
  return madvise(pages.bytes(), pageBytes, MADV_POPULATE_WRITE) == 0;
#else
  return false;
#endif
}

class Populate : public testing::Test {
 protected:
  void SetUp() override {
    if (!kernelPopulates()) {
      GTEST_SKIP() << "this system or this build allocates no pages in advance: the hint does nothing";
    }
  }
};

TEST_F(Populate, BringsThePagesOfTheBytesAndNoOthers) {
  const FreshPages pages(16);
  populate(pages.bytes() + 2 * pageBytes + 100, 8 * pageBytes);
  EXPECT_EQ(pages.present(), (std::vector<unsigned char>{0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0}));
}

TEST_F(Populate, LeavesFewBytesToTheirFaults) {
  const FreshPages pages(16);
  populate(pages.bytes() + 100, 2 * pageBytes);
  populate(pages.bytes() + 100, 0);
  EXPECT_EQ(pages.present(), std::vector<unsigned char>(16, 0));
}

TEST(PopulateAnywhere, LeavesWhatTheMemoryHolds) {
  std::vector<unsigned char> held(100000, 0xa5);
  populate(held.data() + 17, held.size() - 40);
  EXPECT_EQ(std::count(held.begin(), held.end(), 0xa5), 100000);
}

} // namespace
