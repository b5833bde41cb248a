// SPDX-License-Identifier: BSD-3-Clause
// A shared object with a single symbol; the baseline of bench/module_bench.cpp
extern "C" __attribute__((visibility("default"))) int nothing() {
  return 0;
}
