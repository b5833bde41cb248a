// SPDX-License-Identifier: BSD-3-Clause
// Finds runs of points with the same bits.
#include "platform/transformation/repeated_points.h"

#include <algorithm>
#include <cstring>

namespace Proj {

namespace {

using Quillon::PhysicalSpace::point;

// Bits, not values: not-a-number equals itself here, and 0 is not -0.
bool sameAsNext(const point* points, std::size_t count) {
  return std::memcmp(points, points + 1, count * sizeof(point)) == 0;
}

// The first index from `from` on whose point has the bits of its next one; `count` if there is none.
std::size_t findRun(const point* points, std::size_t from, std::size_t count) {
  while (from + 1 < count && !sameAsNext(points + from, 1)) {
    ++from;
  }
  return from + 1 < count ? from : count;
}

// The index behind the run that starts at `from`; whole strides first, since memcmp is fastest on them.
std::size_t findRunEnd(const point* points, std::size_t from, std::size_t count) {
  constexpr std::size_t stride = 256;
  while (from + stride < count && sameAsNext(points + from, stride)) {
    from += stride;
  }
  while (from + 1 < count && sameAsNext(points + from, 1)) {
    ++from;
  }
  return from + 1;
}

} // namespace

void applyOncePerRun(const Operation& operation, point* points, std::size_t count) {
  for (std::size_t done = 0; done < count;) {
    const std::size_t run = findRun(points, done, count);
    if (run == count) {
      operation.apply(points + done, count - done);
      return;
    }
    const std::size_t end = findRunEnd(points, run, count);
    operation.apply(points + done, run - done + 1);
    std::fill(points + run + 1, points + end, points[run]);
    done = end;
  }
}

} // namespace Proj
