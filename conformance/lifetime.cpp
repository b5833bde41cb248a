// SPDX-License-Identifier: BSD-3-Clause
// Promises on the end of the objects, and on threads.
#include "conformance/databases.h"
#include "conformance/promise.h"

#include <algorithm>
#include <array>
#include <functional>
#include <future>
#include <memory>

namespace conformance {

namespace {

using riegl::rdb::Context;
using riegl::rdb::Pointcloud;
using riegl::rdb::pointcloud::OpenSettings;
using riegl::rdb::pointcloud::QuerySelect;

/// The four objects of a load, each of which can be destroyed by itself.
struct Objects {
  explicit Objects(const std::string& path)
      : context(new Context("", "")), database(new Pointcloud(Context(*context))),
        settings(new OpenSettings()) {
    database->open(path, *settings);
    query.reset(new QuerySelect(database->select("")));
  }

  void destroy(int object) {
    const std::array<std::function<void()>, 4> ends{[this] { query.reset(); }, [this] { settings.reset(); },
                                                    [this] { database.reset(); },
                                                    [this] { context.reset(); }};
    ends[static_cast<std::size_t>(object)]();
  }

  std::unique_ptr<Context> context;
  std::unique_ptr<Pointcloud> database;
  std::unique_ptr<OpenSettings> settings;
  std::unique_ptr<QuerySelect> query;
};

constexpr std::array loadOrder{0, 1, 2, 3};

void readSome(Objects& objects, unsigned count) {
  GuardedBuffer<double> buffer(count);
  objects.query->bind("riegl.class", dataType<double>(), buffer.data(), 0);
  expectEqual("next(" + text(count) + ")", objects.query->next(count), count);
  buffer.expectPattern(0, count);
}

void loadOrderIsSafe(Databases& databases) {
  const std::string path = databases.makePattern(10);
  for (const unsigned read : {0U, 4U, 10U}) { // without a block, in the middle, at the end
    Objects objects(path);
    if (read > 0) {
      readSome(objects, read);
    }
    for (const int object : loadOrder) {
      objects.destroy(object);
    }
  }
  Load load(path);
  expectWholePattern(load, "riegl.class", 10, 4);
}

void anyOrderIsSafe(Databases& databases) {
  const std::string path = databases.makePattern(10);
  std::array order = loadOrder;
  do {
    Objects objects(path);
    readSome(objects, 4);
    for (const int object : order) {
      objects.destroy(object);
    }
  } while (std::next_permutation(order.begin(), order.end()));
  Load load(path);
  expectWholePattern(load, "riegl.class", 10, 4);
}

void endLeavesBuffersAlone(Databases& databases) {
  Objects objects(databases.makePattern(10));
  GuardedBuffer<double> buffer(10);
  GuardedBuffer<double> unused(10, 3);
  objects.query->bind("riegl.class", dataType<double>(), buffer.data(), 0);
  expectEqual("next(10)", objects.query->next(10), 10U);
  objects.query->bind("riegl.xyz", dataType<double>(), unused.data(), 0);
  buffer.refill();
  for (const int object : loadOrder) {
    objects.destroy(object);
  }
  buffer.expectUntouchedBehind(0);
  unused.expectUntouchedBehind(0);
}

void loadInAnotherThread(Databases& databases) {
  constexpr std::uint64_t records = 50000;
  constexpr std::uint64_t shift = 100; // the second database begins with another record of the pattern
  const std::array paths{databases.makePattern(records),
                         databases.make({records, {patternColumn("riegl.class", records, 1, shift)}, {}})};
  const auto loadAll = [&](std::size_t number) {
    for (int i = 0; i < 5; ++i) {
      Load load(paths[number]);
      expectWholePattern(load, "riegl.class", records, 1000, number * shift);
      expectEqual("exists(\"riegl.xyz\")", load.database.pointAttribute().exists("riegl.xyz"), number == 0);
    }
  };
  std::future<void> other = std::async(std::launch::async, loadAll, std::size_t{1});
  loadAll(0);
  other.get();
}

} // namespace

std::vector<Promise> lifetimePromises() {
  return {
      {"ObjectsEndInTheOrderOfALoad",
       "Query, settings, database and context may be destroyed in this order, after any number of blocks.",
       "A load ends so, also where it ends by an error.", loadOrderIsSafe},
      {"ObjectsEndInAnyOrder",
       "Query, settings, database and context may be destroyed in every other order as well.",
       "A query and a context are handles; a host keeps its own as long as it likes.", anyOrderIsSafe},
      {"EndOfAQueryLeavesBuffersAlone",
       "The destruction of a query does not write into buffers that are bound.",
       "The buffers are freed before the query is destroyed, or stand on the grid.", endLeavesBuffersAlone},
      {"SecondDatabaseInAnotherThread",
       "Two threads read two databases at the same time, each with objects of its own.",
       "Loads of distinct files may run side by side; the library takes no lock.", loadInAnotherThread},
  };
}

} // namespace conformance
