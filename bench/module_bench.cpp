// SPDX-License-Identifier: BSD-3-Clause
// Loading and unloading the library against an empty shared object, each time in a fresh process that has already loaded
// the libraries that it needs. The target applies to the difference of the two times.
// The library stays in a process once it is loaded (-z nodelete), because the framework's tables keep what it has entered:
// `dlclose` is timed, but frees nothing.
#include "bench/support/child.h"
#include "bench/support/comparison.h"
#include "bench/support/program.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

namespace {

void* openModule(const char* path) {
  void* const module = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
  if (module == nullptr) {
    throw std::runtime_error(dlerror());
  }
  return module;
}

/// In the child: loads the libraries that the module needs, then times the module alone and prints milliseconds.
int reportModule(const char* module, const char* symbol) {
  for (const char* const beneath :
       {QT_CORE_FILE, MODEL_FILE, CLIENT_FILE, TRANSFORMATION_FILE, CALENDAR_FILE}) {
    openModule(beneath);
  }
  const auto start = std::chrono::steady_clock::now();
  void* const opened = openModule(module);
  const bool found = dlsym(opened, symbol) != nullptr;
  dlclose(opened);
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  std::printf("%.6f\n", spent.count());
  return found ? 0 : 1;
}

bench::Spent spent(const char* module, const char* symbol) {
  return {bench::numbers({bench::thisProgram(), "module", module, symbol}).at(0), 0};
}

bench::Finding modules() {
  return bench::compareMeasured([] { return spent(LIBRARY_FILE, LIBRARY_SYMBOL); },
                                [] { return spent(EMPTY_FILE, "nothing"); });
}

int run(int argc, char** argv) {
  if (argc == 4 && std::strcmp(argv[1], "module") == 0) {
    return reportModule(argv[2], argv[3]);
  }
  bench::addComparison("dlopen and dlclose of the library / of an empty one", modules);
  return bench::runComparisons(argc, argv);
}

} // namespace

int main(int argc, char** argv) {
  return bench::runProgram("module_bench", run, argc, argv);
}
