// SPDX-License-Identifier: BSD-3-Clause
// Promises on the catalogue of attributes and on metadata.
#include "conformance/databases.h"
#include "conformance/promise.h"

namespace conformance {

namespace {

void attributesAreThereByName(Databases& databases) {
  Load load(databases.makePattern(1));
  const auto exists = [&](const std::string& name) { return load.database.pointAttribute().exists(name); };
  expectEqual("exists(\"riegl.class\")", exists("riegl.class"), true);
  expectEqual("exists(\"own.name\")", exists("own.name"), true); // no list of known names limits a database
  expectEqual("exists(\"riegl.clas\")", exists("riegl.clas"), false);
  expectEqual("exists(\"riegl.classes\")", exists("riegl.classes"), false);
  expectEqual("exists(\"\")", exists(""), false);
}

void catalogueAnswersDuringAQuery(Databases& databases) {
  Load load(
      databases.make({10, {patternColumn("riegl.class", 10)}, {{"riegl.time_base", "{\"epoch\": \"x\"}"}}}));
  const std::string metadata = load.database.metaData().get("riegl.time_base", "");
  expectEqual("get(\"riegl.time_base\") after select", metadata, "{\"epoch\": \"x\"}");
  for (std::uint64_t position = 0; position < 9; position += 3) {
    expectEqual("exists(\"riegl.class\") between two blocks",
                load.database.pointAttribute().exists("riegl.class"), true);
    expectEqual("exists(\"riegl.absent\") between two blocks",
                load.database.pointAttribute().exists("riegl.absent"), false);
    GuardedBuffer<double> buffer(3);
    load.bind("riegl.class", buffer);
    expectEqual("next(3)", load.query.next(3), 3U);
    buffer.expectPattern(position, 3);
  }
}

void metadataIsText(Databases& databases) {
  Load load(databases.make({0, {}, {{"riegl.time_base", "{\"epoch\": \"\xC3\xA9\"}"}, {"riegl.empty", ""}}}));
  const riegl::rdb::Pointcloud& constant = load.database;
  expectEqual("exists(\"riegl.time_base\")", load.database.metaData().exists("riegl.time_base"), true);
  expectEqual("exists(\"riegl.empty\")", constant.metaData().exists("riegl.empty"), true);
  expectEqual("get(\"riegl.time_base\", \"\")", load.database.metaData().get("riegl.time_base", ""),
              "{\"epoch\": \"\xC3\xA9\"}");
  expectEqual("get(\"riegl.time_base\", \"\") of the constant database",
              constant.metaData().get("riegl.time_base", ""), "{\"epoch\": \"\xC3\xA9\"}");
  expectEqual("get(\"riegl.empty\", \"other\")", constant.metaData().get("riegl.empty", "other"), "");
}

void absentMetadataGivesTheFallback(Databases& databases) {
  Load load(databases.make({0, {}, {{"riegl.geo_tags", "{}"}}}));
  expectEqual("exists(\"riegl.geo_tag\")", load.database.metaData().exists("riegl.geo_tag"), false);
  expectEqual("get(\"riegl.geo_tag\", \"\")", load.database.metaData().get("riegl.geo_tag", ""), "");
  expectEqual("get(\"riegl.geo_tag\", \"none\")", load.database.metaData().get("riegl.geo_tag", "none"),
              "none");
}

void longMetadataComesWhole(Databases& databases) {
  std::string document = "[\n";
  while (document.size() < 1000000) {
    document +=
        "\t{\"text\": \"\\\"quoted\\\" \xE2\x82\xAC\", \"value\": " + std::to_string(document.size()) +
        "},\r\n";
  }
  document += "{}]";
  Load load(databases.make({0, {}, {{"riegl.waveform_info", document}}}));
  const std::string found = load.database.metaData().get("riegl.waveform_info", "");
  expectEqual("length of the item", found.size(), document.size());
  expect(found == document, "the item's text as it was stored", "another text of the same length");
}

} // namespace

std::vector<Promise> cataloguePromises() {
  return {
      {"AttributesAreThereByNameOnly",
       "`PointAttributes::exists` is true for the attributes of the database, whatever their names, and "
       "false for "
       "every other text.",
       "A column is read if its attribute exists, and left out otherwise.", attributesAreThereByName},
      {"CatalogueAnswersDuringAQuery",
       "Attributes and metadata may be asked for after `select` and between two `next`, without an effect on "
       "the "
       "query.",
       "`exists` is asked anew for every column after every block; a trajectory load reads metadata after "
       "`select`.",
       catalogueAnswersDuringAQuery},
      {"MetadataIsTextByName",
       "`MetaData::get` returns an item's text byte for byte, an empty one too, through a constant database "
       "as well.",
       "Time base, position and scanner parameters are JSON texts of the metadata.", metadataIsText},
      {"AbsentMetadataGivesTheFallback",
       "`MetaData::exists` is false for an absent item, and `get` returns the fallback and raises nothing.",
       "The reader of the scanner parameters calls `get` with an empty fallback and without `exists`.",
       absentMetadataGivesTheFallback},
      {"LongMetadataComesWhole", "An item of a million bytes with line feeds, tabs and quotes comes whole.",
       "Reflectance tables and waveform descriptions are long documents.", longMetadataComesWhole},
  };
}

} // namespace conformance
