// SPDX-License-Identifier: BSD-3-Clause
// A promise of the client's interface, the list of all of them, and what became of one.
#pragma once

#include <string>
#include <vector>

namespace conformance {

class Databases;

/// One rule that a client has to honour.
struct Promise {
  const char* name;
  const char* sentence; ///< the rule
  const char* reliance; ///< what a load does that needs it
  void (*check)(Databases& databases);
};

/// All promises, topic by topic.
const std::vector<Promise>& promises();

// The topics.
std::vector<Promise> openingPromises();
std::vector<Promise> cataloguePromises();
std::vector<Promise> readingPromises();
std::vector<Promise> bindingPromises();
std::vector<Promise> conversionPromises();
std::vector<Promise> lifetimePromises();

/// What became of a promise.
struct Outcome {
  bool kept = false;
  std::string expectation{}; ///< of the check that failed
  std::string finding{};
  double seconds = 0;
};

/// Checks a promise in this process.
/// \param folder  exists and is empty; the databases of the check are made in it
/// \errors none; everything that is raised is an outcome
Outcome check(const Promise& promise, const std::string& folder);

/// Checks a promise in a process of its own, so that a crash or a check that never ends is an outcome too.
/// \errors std::runtime_error if the process cannot be started
Outcome checkApart(const Promise& promise, const std::string& folder);

} // namespace conformance
