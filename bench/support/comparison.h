// SPDX-License-Identifier: BSD-3-Clause
// Times a code path and its baseline alternately, and reports the ratio of the medians.
// docs/benchmarks.md says how to read the output.
#pragma once

#include <benchmark/benchmark.h>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

/// One side of a comparison. Only `run` is timed; `prepare` comes before it and `clear` after it, each time.
struct Side {
  std::function<void()> run;
  std::function<void()> clear = [] {};
  std::function<void()> prepare = [] {};
};

/// Duration of one run: by the clock, and of all processors together (0 where that isn't known).
struct Spent {
  double clockMs = 0;
  double processorMs = 0;
};

/// Result of a comparison, in milliseconds of the clock. Least and greatest are ratios of neighbouring runs. On a
/// machine that does other work too, the ratios of the best runs and of processor times say more than the medians.
struct Finding {
  double pathMs = 0;
  double baselineMs = 0;
  double leastRatio = 0;
  double greatestRatio = 0;
  double bestRatio = 0;      ///< shortest run of the path over shortest run of the baseline
  double processorRatio = 0; ///< of the medians of processor time; 0 where that isn't known

  double ratio() const { return pathMs / baselineMs; }
  std::string text() const;
};

/// Runs the path, the baseline, the path, the baseline and so on, as often as the command line asks for, after one
/// run of each that does not count.
Finding compare(const Side& path, const Side& baseline);

/// The same for sides that measure their own time, for instance that of another process.
Finding compareMeasured(const std::function<Spent()>& path, const std::function<Spent()>& baseline);

/// The middle of some values, at least one; of an even number, the mean of the two middle ones.
double median(std::vector<double> values);

/// Runs something and measures its time, including that of processes which it starts and waits for.
Spent spentBy(const std::function<void()>& work);

/// Raises std::runtime_error if the two sides of a comparison give different results.
void require(bool equal, const std::string& what);

/// Records to work on: the number that a figure is meant for, or few in a smoke test.
unsigned int records(unsigned int full, unsigned int fewer);

/// A benchmark in the framework's terms: sets a comparison up, checks its results, and compares. The framework sees
/// one iteration that takes the path's median; ratio, medians and range are its counters and its label. An exception
/// fails the benchmark and the program.
void addComparison(const std::string& name, std::function<Finding()> measure);

/// Runs the benchmarks that were added. On the command line: `--small`, `--repetitions=N`, and the framework's own
/// options. \return the exit status: 1 where a benchmark failed
int runComparisons(int argc, char** argv);

} // namespace bench
