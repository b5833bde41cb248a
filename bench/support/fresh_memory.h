// Memory as a careful program would take it for a large read: untouched, on huge pages.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <sys/mman.h>
#include <system_error>

namespace bench {

/// Fresh zero pages; huge ones are asked for. Aligned to them.
class FreshMemory {
 public:
  explicit FreshMemory(std::size_t bytes) : mapped(bytes + hugePageBytes) {
    place = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED) {
      throw std::system_error(errno, std::generic_category(), "mmap");
    }
    madvise(place, mapped, MADV_HUGEPAGE);
  }
  FreshMemory(const FreshMemory&) = delete;
  FreshMemory& operator=(const FreshMemory&) = delete;
  ~FreshMemory() { munmap(place, mapped); }

  unsigned char* bytes() const {
    const auto address = reinterpret_cast<std::uintptr_t>(place);
    return static_cast<unsigned char*>(place) + (hugePageBytes - address % hugePageBytes) % hugePageBytes;
  }

 private:
  static constexpr std::size_t hugePageBytes = std::size_t{1} << 21;
  std::size_t mapped;
  void* place;
};

} // namespace bench
