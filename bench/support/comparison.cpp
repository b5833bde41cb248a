// SPDX-License-Identifier: BSD-3-Clause
// Alternating runs, medians, and their report through the benchmark framework.
#include "bench/support/comparison.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>
#include <vector>

namespace bench {

namespace {

bool small = false;
bool failed = false;
int repetitions = 9;

/// Processor time of this process and of the children that have ended.
double processorMs() {
  double total = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage{};
    getrusage(who, &usage);
    for (const timeval& part : {usage.ru_utime, usage.ru_stime}) {
      total += static_cast<double>(part.tv_sec) * 1000 + static_cast<double>(part.tv_usec) / 1000;
    }
  }
  return total;
}

Spent timeOf(const Side& side) {
  side.prepare();
  const Spent spent = spentBy(side.run);
  side.clear();
  return spent;
}

double least(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

/// Removes this program's own options from the command line.
void readOptions(int& argc, char** argv) {
  constexpr const char* repetitionsOption = "--repetitions=";
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--small") == 0) {
      small = true;
      repetitions = 1;
    } else if (std::strncmp(argv[i], repetitionsOption, std::strlen(repetitionsOption)) == 0) {
      repetitions = std::max(1, std::atoi(argv[i] + std::strlen(repetitionsOption)));
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
}

void runOne(benchmark::State& state, const std::function<Finding()>& measure) {
  try {
    for ([[maybe_unused]] auto iteration : state) {
      const Finding finding = measure();
      state.SetIterationTime(finding.pathMs / 1000);
      state.counters["ratio"] = finding.ratio();
      state.counters["best_ratio"] = finding.bestRatio;
      state.counters["processor_ratio"] = finding.processorRatio;
      state.counters["path_ms"] = finding.pathMs;
      state.counters["baseline_ms"] = finding.baselineMs;
      state.SetLabel(finding.text());
    }
  } catch (const std::exception& failure) {
    failed = true;
    state.SkipWithError(failure.what());
  }
}

} // namespace

std::string Finding::text() const {
  char text[192];
  const int length = std::snprintf(text, sizeof text, "%.4g ms / %.4g ms = %.4g (%.4g..%.4g), best runs %.4g",
                                   pathMs, baselineMs, ratio(), leastRatio, greatestRatio, bestRatio);
  if (processorRatio > 0) {
    std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length), ", processor time %.4g",
                  processorRatio);
  }
  return text;
}

Finding compare(const Side& path, const Side& baseline) {
  return compareMeasured([&] { return timeOf(path); }, [&] { return timeOf(baseline); });
}

Finding compareMeasured(const std::function<Spent()>& path, const std::function<Spent()>& baseline) {
  path();
  baseline();
  std::vector<double> paths, baselines, ratios, pathProcessor, baselineProcessor;
  for (int i = 0; i < repetitions; ++i) {
    const Spent byPath = path();
    const Spent byBaseline = baseline();
    paths.push_back(byPath.clockMs);
    baselines.push_back(byBaseline.clockMs);
    ratios.push_back(byPath.clockMs / byBaseline.clockMs);
    pathProcessor.push_back(byPath.processorMs);
    baselineProcessor.push_back(byBaseline.processorMs);
  }
  const double processor = median(baselineProcessor);
  return {median(paths),
          median(baselines),
          least(ratios),
          *std::max_element(ratios.begin(), ratios.end()),
          least(paths) / least(baselines),
          processor > 0 ? median(pathProcessor) / processor : 0};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Spent spentBy(const std::function<void()>& work) {
  const double processorBefore = processorMs();
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  return {spent.count(), processorMs() - processorBefore};
}

void require(bool equal, const std::string& what) {
  if (!equal) {
    throw std::runtime_error("results differ: " + what);
  }
}

unsigned int records(unsigned int full, unsigned int fewer) {
  return small ? fewer : full;
}

void addComparison(const std::string& name, std::function<Finding()> measure) {
  benchmark::RegisterBenchmark(
      name.c_str(), [measure = std::move(measure)](benchmark::State& state) { runOne(state, measure); })
      ->Iterations(1)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

int runComparisons(int argc, char** argv) {
  readOptions(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return failed ? 1 : 0;
}

} // namespace bench
