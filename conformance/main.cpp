// SPDX-License-Identifier: BSD-3-Clause
// rdb-conformance: checks the promises of the client that it is linked with.
#include "conformance/report.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace {

using conformance::Outcome;
using conformance::Promise;

constexpr const char* usage =
    "rdb-conformance [--junit FILE] [PROMISE...]   checks all promises, or those named\n"
    "rdb-conformance --list                        prints the promises\n";

/// A folder for the databases of a run, removed at its end.
class Folder {
 public:
  Folder() {
    path = (std::filesystem::temp_directory_path() / "rdb-conformance-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
      throw std::runtime_error("cannot make a temporary folder from " + path);
    }
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  std::string path;
};

struct Options {
  std::string junit{};
  std::vector<Promise> chosen{};
};

const Promise& promiseOf(const std::string& name) {
  const std::vector<Promise>& all = conformance::promises();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Promise& promise) { return promise.name == name; });
  if (found == all.end()) {
    throw std::invalid_argument("expected the name of a promise (see --list), found \"" + name + "\"");
  }
  return *found;
}

Options optionsOf(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] != "--junit") {
      options.chosen.push_back(promiseOf(arguments[i]));
    } else if (++i < arguments.size()) {
      options.junit = arguments[i];
    } else {
      throw std::invalid_argument("expected a file after --junit, found nothing");
    }
  }
  if (options.chosen.empty()) {
    options.chosen = conformance::promises();
  }
  return options;
}

int run(const Options& options) {
  std::ofstream junit;
  if (!options.junit.empty()) {
    junit.open(options.junit);
    if (!junit) {
      throw std::runtime_error("cannot write " + options.junit);
    }
  }
  const Folder folder;
  std::vector<Outcome> outcomes;
  for (const Promise& promise : options.chosen) {
    const std::string own = folder.path + "/" + promise.name;
    std::filesystem::create_directory(own);
    outcomes.push_back(conformance::checkApart(promise, own));
    conformance::writeLine(std::cout, promise, outcomes.back());
    std::filesystem::remove_all(own);
  }
  conformance::writeTotal(std::cout, outcomes);
  if (junit.is_open()) {
    conformance::writeJUnit(junit, options.chosen, outcomes);
    junit.close();
    if (!junit) {
      throw std::runtime_error("cannot write " + options.junit);
    }
  }
  const auto kept = [](const Outcome& outcome) { return outcome.kept; };
  return std::all_of(outcomes.begin(), outcomes.end(), kept) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
  try {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"--list"}) {
      conformance::writeList(std::cout);
      return 0;
    }
    return run(optionsOf(arguments));
  } catch (const std::invalid_argument& error) {
    std::cerr << error.what() << '\n' << usage;
  } catch (const std::exception& error) {
    std::cerr << "rdb-conformance: " << error.what() << '\n';
  }
  return 2;
}
