// Memory as a careful program would take it for a large read, untouched and on huge pages, and that read.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

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

/// Reads the first `bytes` bytes of a file, in large pieces and through the page cache.
inline void readWhole(const std::string& path, unsigned char* to, std::size_t bytes) {
  constexpr std::size_t bytesAtOnce = std::size_t{8} << 20;
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  for (std::size_t done = 0; done < bytes;) {
    const ssize_t got =
        pread(descriptor, to + done, std::min(bytesAtOnce, bytes - done), static_cast<off_t>(done));
    if (got <= 0) {
      throw std::system_error(errno, std::generic_category(), "reading " + path);
    }
    done += static_cast<std::size_t>(got);
  }
  close(descriptor);
}

} // namespace bench
