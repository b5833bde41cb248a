// SPDX-License-Identifier: BSD-3-Clause
// The query: names and data types of the client, carried out by a cursor of the container.
#include "platform/client/query_select.h"

#include "container/read/cursor.h"
#include "names/names.h"
#include "platform/client/database.h"
#include "platform/client/element_type.h"

#include <utility>

namespace riegl::rdb::pointcloud {

struct QuerySelect::State {
  std::shared_ptr<embedded::Database> database;
  container::Cursor cursor{*database};
};

namespace {

/// A caller's buffer is sized by the attribute's name; the length in the file must not exceed that.
void requireStandardLength(const container::Attribute& attribute, const std::string& path) {
  const Riegl::Attribute* const standard = Riegl::attributes::find(attribute.name);
  if (standard != nullptr &&
      (attribute.length < standard->leastValues || attribute.length > standard->mostValues)) {
    throw Error(ErrorKind::wrongFormat, "the attribute has another length than its name stands for",
                "column \"" + attribute.name + "\" of " + path + ": expected " +
                    std::to_string(standard->mostValues) + " values per record, found " +
                    std::to_string(attribute.length));
  }
}

container::ElementType requireElementType(const std::string& name, DataType dataType) {
  const auto type = embedded::elementTypeOf(dataType);
  if (!type) {
    throw Error(ErrorKind::wrongUse, "the attribute cannot be bound",
                "column \"" + name + "\": expected a data type of 1 to 10, found " +
                    std::to_string(static_cast<std::uint32_t>(dataType)));
  }
  return *type;
}

} // namespace

QuerySelect::QuerySelect() = default;

QuerySelect::QuerySelect(std::shared_ptr<embedded::Database> database)
    : state(new State{std::move(database)}) {}

QuerySelect::QuerySelect(const QuerySelect&) noexcept = default;

QuerySelect& QuerySelect::operator=(const QuerySelect&) noexcept = default;

QuerySelect::~QuerySelect() = default;

void QuerySelect::bind(const std::string& name, DataType dataType, void* buffer, int stride) {
  const embedded::Database& database = requireOpen(state ? state->database : nullptr);
  embedded::translated([&] {
    requireStandardLength(database.require(name), database.path());
    state->cursor.bind(name, requireElementType(name, dataType), buffer, stride);
  });
}

unsigned int QuerySelect::next(unsigned int count) {
  requireOpen(state ? state->database : nullptr);
  return embedded::translated([&] { return static_cast<unsigned int>(state->cursor.next(count)); });
}

} // namespace riegl::rdb::pointcloud
