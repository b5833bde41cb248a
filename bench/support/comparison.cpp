// Alternating runs, medians, and their report through the benchmark framework.
// Partner: comparison.h
#include "bench/support/comparison.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace bench {

namespace {

bool small = false;
bool failed = false;
int repetitions = 9;

double timeOf(const Side& side) {
  side.prepare();
  const auto start = std::chrono::steady_clock::now();
  side.run();
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  side.clear();
  return spent.count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// Takes this program's own options out of the command line.
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
  char text[128];
  std::snprintf(text, sizeof text, "%.4g ms / %.4g ms = %.4g (%.4g..%.4g)", pathMs, baselineMs, ratio(),
                leastRatio, greatestRatio);
  return text;
}

Finding compare(const Side& path, const Side& baseline) {
  return compareMeasured([&] { return timeOf(path); }, [&] { return timeOf(baseline); });
}

Finding compareMeasured(const std::function<double()>& path, const std::function<double()>& baseline) {
  path();
  baseline();
  std::vector<double> paths;
  std::vector<double> baselines;
  std::vector<double> ratios;
  for (int i = 0; i < repetitions; ++i) {
    paths.push_back(path());
    baselines.push_back(baseline());
    ratios.push_back(paths.back() / baselines.back());
  }
  const auto [least, greatest] = std::minmax_element(ratios.begin(), ratios.end());
  return {median(paths), median(baselines), *least, *greatest};
}

void require(bool equal, const std::string& what) {
  if (!equal) {
    throw std::runtime_error("results differ: " + what);
  }
}

unsigned int records(unsigned int full, unsigned int fewer) {
  return small ? fewer : full;
}

bool isSmokeTest() {
  return small;
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
