// SPDX-License-Identifier: BSD-3-Clause
// Joins the topics to one list, and checks a promise.
#include "conformance/promise.h"

#include "conformance/checks.h"
#include "conformance/databases.h"

#include <chrono>

namespace conformance {

namespace {

std::string readable(const std::optional<std::string>& given) {
  return given ? *given : "a null pointer";
}

Outcome checkUntimed(const Promise& promise, const std::string& folder) {
  Outcome outcome;
  outcome.expectation = "no exception";
  try {
    Databases databases(folder);
    promise.check(databases);
    return {true};
  } catch (const Broken& broken) {
    outcome.expectation = broken.expectation;
    outcome.finding = broken.finding;
  } catch (const riegl::rdb::Error& error) {
    const ErrorTexts texts = textsOf(error);
    outcome.finding = "riegl::rdb::Error: " + readable(texts.what) + " (" + readable(texts.details) + ")";
  } catch (const std::exception& error) {
    outcome.finding = std::string("std::exception: ") + error.what();
  } catch (...) {
    outcome.finding = "an exception that is no std::exception";
  }
  return outcome;
}

} // namespace

const std::vector<Promise>& promises() {
  static const std::vector<Promise> all = [] {
    std::vector<Promise> joined;
    for (const auto& topic : {openingPromises(), cataloguePromises(), readingPromises(), bindingPromises(),
                              conversionPromises(), lifetimePromises()}) {
      joined.insert(joined.end(), topic.begin(), topic.end());
    }
    return joined;
  }();
  return all;
}

Outcome check(const Promise& promise, const std::string& folder) {
  const auto start = std::chrono::steady_clock::now();
  Outcome outcome = checkUntimed(promise, folder);
  outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return outcome;
}

} // namespace conformance
