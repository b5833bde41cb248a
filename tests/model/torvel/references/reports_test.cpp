// SPDX-License-Identifier: BSD-3-Clause
// The five reports of the reference scheme: each is provoked, its text pinned, and the operation goes on.
#include "tests/model/torvel/references/counted_item.h"
#include "tests/support/console_lines.h"
#include "tests/support/grouping_locale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <optional>
#include <sstream>
#include <stdexcept>

using counted::Item;
using counted::record;
using counted::Strong;
using counted::Weak;
using support::ConsoleLines;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string place(const void* address) {
  std::ostringstream text;
  text << address;
  return text.str();
}

std::string textOfSelfConstruction(const std::string& pointer, const void* self) {
  return "reference scheme: " + pointer + " at " + place(self) + " is constructed from itself (record 0)";
}

TEST(Reports, OrdinaryWorkReportsNothing) {
  const ConsoleLines console;
  Strong strong(new Item);
  const Weak weak(strong);
  strong = nullptr;
  EXPECT_THAT(console.lines(), IsEmpty());
}

TEST(Reports, StrongPointerConstructedFromItself) {
  const ConsoleLines console;
  alignas(Strong) unsigned char memory[sizeof(Strong)] = {};
  auto* const pointer = reinterpret_cast<Strong*>(memory);
  new (memory) Strong(*pointer);
  EXPECT_EQ(pointer->get(), nullptr);
  pointer->~Strong();
  EXPECT_THAT(console.lines(),
              ElementsAre(textOfSelfConstruction("Torvel::DynPtr<counted::Item, counted::Item>", memory)));
}

TEST(Reports, WeakPointerConstructedFromItself) {
  const ConsoleLines console;
  alignas(Weak) unsigned char memory[sizeof(Weak)] = {};
  auto* const pointer = reinterpret_cast<Weak*>(memory);
  new (memory) Weak(*pointer);
  pointer->~Weak();
  EXPECT_THAT(console.lines(),
              ElementsAre(textOfSelfConstruction("Torvel::DynPtr<counted::Item, counted::Item>", memory)));
}

TEST(Reports, HookThatChangesTheCountIsReportedAndTheObjectLivesOn) {
  const ConsoleLines console;
  int deaths = 0;
  auto* const item = new Item(&deaths);
  Strong strong(item);
  Strong kept;
  item->hook = [&] { kept = item; };
  strong = nullptr;
  EXPECT_EQ(deaths, 0);
  EXPECT_EQ(kept.counts()->strong(), 1);
  EXPECT_THAT(console.lines(),
              ElementsAre("reference scheme: the pre-destruction hook of an object of family "
                          "counted::Item changed its strong count: strong 2, weak 3"));
  item->hook = nullptr;
  kept = nullptr;
  EXPECT_EQ(deaths, 1);
}

TEST(Reports, LastHoldOnAnInvalidRecordIsReportedAndTheReleaseGoesOn) {
  const ConsoleLines console;
  auto* const item = new Item;
  Strong strong(item);
  const Weak weak(strong);
  item->hook = [&] { record(weak).takeObject(); };
  strong = nullptr;
  EXPECT_EQ(weak.counts()->strong(), -111);
  EXPECT_THAT(console.lines(),
              ElementsAre("reference scheme: the last strong hold in family counted::Item ends on an invalid "
                          "record: strong 0, weak 3, record " +
                          place(weak.counts()) + ", object 0"));
  item->hook = nullptr;
  delete item; // its record has lost it, so the counts can't destroy it
}

TEST(Reports, NewHoldDuringTheReleaseCancelsTheDestruction) {
  auto* const item = new Item;
  Strong strong(item);
  const Weak weak(strong);
  Strong taken;
  std::vector<std::string> lines;
  const Torvel::LineSink before = Torvel::setLineSink([&](const std::string& line) {
    lines.push_back(line);
    taken = weak; // between the decrement and the destruction
  });
  item->hook = [&] { record(weak).takeObject(); };
  strong = nullptr;
  Torvel::setLineSink(before);
  EXPECT_EQ(weak.counts()->strong(), 1);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[1],
            "reference scheme: destruction of an object of family counted::Item is cancelled, it was "
            "taken up again: strong 1, weak 4");
  delete item;
}

std::string textOfInvalidWeak(std::uint64_t number, const std::string& counts, const void* record,
                              const void* object, const std::string& pointer = "WeakPtr",
                              const std::string& kind = "Item") {
  return "reference scheme: weak hold of Torvel::" + pointer + "<counted::Item, counted::Item> number " +
         std::to_string(number) + " (Torvel::DynPtr<counted::Item, counted::Item> on counted::" + kind +
         " in family counted::Item) is released, but the weak count isn't positive: " + counts + ", record " +
         place(record) + ", object " + place(object);
}

/// Lowers a record by two weak counts while it lives: the object's own and that of a pointer.
class WithoutWeakHolds {
 public:
  explicit WithoutWeakHolds(counted::Record& record) : counts(record) {
    counts.lowerWeak();
    counts.lowerWeak();
  }
  WithoutWeakHolds(const WithoutWeakHolds&) = delete;
  WithoutWeakHolds& operator=(const WithoutWeakHolds&) = delete;
  ~WithoutWeakHolds() {
    counts.raiseWeak();
    counts.raiseWeak();
  }

 private:
  counted::Record& counts;
};

TEST(Reports, WeakReleaseWithoutAWeakCountOnALiveObject) {
  const ConsoleLines console;
  Item item;
  auto weak = std::make_optional<Weak>(&item);
  const std::uint64_t number = weak->serialNumber();
  auto& counts = record(*weak);
  const WithoutWeakHolds lowered(counts);
  weak.reset();
  EXPECT_EQ(counts.weak(), -1); // reported, and lowered all the same
  EXPECT_THAT(console.lines(), ElementsAre(textOfInvalidWeak(number, "strong 0, weak 0", &counts, &item)));
}

TEST(Reports, WeakReleaseWithoutAWeakCountOnADeadObject) {
  const ConsoleLines console;
  Strong strong(new Item);
  counted::Record* const counts = &record(strong);
  auto weak = std::make_optional<Weak>(strong);
  const std::uint64_t number = weak->serialNumber();
  strong = nullptr;
  counts->lowerWeak();
  weak.reset();
  EXPECT_EQ(counts->weak(), -1);
  EXPECT_THAT(console.lines(),
              ElementsAre(textOfInvalidWeak(number, "strong -111, weak 0", counts, nullptr)));
  delete counts; // the weak count never reached 0
}

TEST(Reports, WeakReleaseWithoutAWeakCountNamesTheKindOfALiveObject) {
  const ConsoleLines console;
  counted::SpecialItem item;
  auto weak = std::make_optional<Weak>(&item);
  const std::uint64_t number = weak->serialNumber();
  auto& counts = record(*weak);
  const WithoutWeakHolds lowered(counts);
  weak.reset();
  EXPECT_THAT(console.lines(), ElementsAre(textOfInvalidWeak(number, "strong 0, weak 0", &counts, &item,
                                                             "WeakPtr", "SpecialItem")));
}

TEST(Reports, WeakReleaseWithoutAWeakCountNamesAStrongPointer) {
  const ConsoleLines console;
  auto strong = std::make_optional<Strong>(new Item);
  counted::Record* const counts = &record(*strong);
  const std::uint64_t number = strong->serialNumber();
  counts->lowerWeak();
  counts->lowerWeak();
  strong.reset();
  EXPECT_THAT(console.lines(),
              ElementsAre(textOfInvalidWeak(number, "strong -111, weak -1", counts, nullptr, "StrongPtr")));
  delete counts; // the weak count never reached 0
}

TEST(Reports, WeakReleaseByAnAssignmentNamesTheNumberThatThePointerHad) {
  const ConsoleLines console;
  Item item;
  Weak weak(&item);
  const std::uint64_t number = weak.serialNumber();
  auto& counts = record(weak);
  const WithoutWeakHolds lowered(counts);
  weak = nullptr;
  EXPECT_THAT(console.lines(), ElementsAre(textOfInvalidWeak(number, "strong 0, weak 0", &counts, &item)));
}

/// Sets a sink that raises for every line, while it lives.
class FullSink {
 public:
  FullSink() : before(Torvel::setLineSink([](const std::string&) { throw std::runtime_error("full"); })) {}
  FullSink(const FullSink&) = delete;
  FullSink& operator=(const FullSink&) = delete;
  ~FullSink() { Torvel::setLineSink(before); }

 private:
  Torvel::LineSink before;
};

TEST(Reports, LineThatCannotBeWrittenIsLost) {
  using Torvel::SpeakPtr;
  const FullSink sink;
  const auto& type = typeid(Item);
  EXPECT_NO_THROW(SpeakPtr::theSpeaker().SelfConstruction(type, nullptr, nullptr));
  EXPECT_NO_THROW(SpeakPtr::theSpeaker().InvalidWeakPtr(type, type, type, type, 0, 0, nullptr, nullptr, 0));
  EXPECT_NO_THROW(SpeakPtr::DynPtrInvalid(nullptr, nullptr, 0, 0, type));
  EXPECT_NO_THROW(SpeakPtr::DestructionCancelled(0, 0, type));
  EXPECT_NO_THROW(SpeakPtr::WarningUnctionChange(0, 0, type));
}

TEST(Reports, LineThatCannotBeWrittenEndsNoRelease) {
  const FullSink sink;
  auto* const item = new Item;
  Strong kept;
  item->hook = [&] { kept = item; };
  { const Strong strong(item); }
  EXPECT_EQ(kept.counts()->strong(), 1);
  item->hook = nullptr;
}

TEST(Reports, SpeakerIsOneObject) {
  EXPECT_EQ(&Torvel::SpeakPtr::theSpeaker(), &Torvel::SpeakPtr::theSpeaker());
}

TEST(Reports, ReadTheSameInALocaleThatGroupsDigits) {
  const ConsoleLines console;
  const auto report = [] {
    const std::type_info& type = typeid(Item);
    Torvel::SpeakPtr::theSpeaker().InvalidWeakPtr(type, type, type, type, 1, 0, &type, &type, 1234567);
  };
  report();
  const support::GroupingLocale grouping;
  report();
  EXPECT_THAT(console.lines(), ElementsAre(testing::HasSubstr("number 1234567 "), console.lines().at(0)));
}

} // namespace
