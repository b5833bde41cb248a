// SPDX-License-Identifier: BSD-3-Clause
// The embedded client under the suite that every client has to pass.
#include "container/write/writer.h"
#include "platform/client/rdb.h"
#include "tests/platform/client/client_suite.h"
#include "tests/support/virtual_slot.h"

namespace {

using container::ElementType;
using container::Writer;

/// Writes the contents as they are, in blocks of `blockRows`, stored as `type`.
template <ElementType Type, class Element, std::uint32_t BlockRows>
struct Embedded {
  static std::string make(const clientsuite::Contents& contents, const support::TempDir& directory) {
    const std::string path = directory.path("scan.rdbx");
    Writer writer(path, {BlockRows, true});
    std::vector<std::vector<Element>> values;
    std::vector<const void*> columns;
    for (const clientsuite::ColumnContents& column : contents.columns) {
      writer.addAttribute({column.name, Type, column.length});
      std::vector<Element>& all = values.emplace_back();
      all.reserve(contents.records * column.length);
      for (std::uint64_t record = 0; record < contents.records; ++record) {
        for (unsigned component = 0; component < column.length; ++component) {
          all.push_back(static_cast<Element>(column.value(record, component)));
        }
      }
      columns.push_back(all.data());
    }
    for (const auto& [name, value] : contents.items) {
      writer.setMetadata(name, value);
    }
    writer.write(contents.records, columns);
    writer.finish();
    return path;
  }
};

TEST(ClientError, VirtualsStandInTheToldOrder) {
  using support::slotOf;
  EXPECT_EQ(slotOf(&riegl::rdb::Error::what), 2); // the destructors take two slots
  EXPECT_EQ(slotOf(&riegl::rdb::Error::code), 3);
  EXPECT_EQ(slotOf(&riegl::rdb::Error::details), 4);
}

using Clients = testing::Types<Embedded<ElementType::uint8, std::uint8_t, 125000>,
                               Embedded<ElementType::int16, std::int16_t, 65537>,
                               Embedded<ElementType::float64, double, 37>>;

} // namespace

namespace clientsuite {
INSTANTIATE_TYPED_TEST_SUITE_P(EmbeddedClient, ClientSuite, Clients);
}
