// SPDX-License-Identifier: BSD-3-Clause
// Writes the JSON object piece by piece, without building a tree of it.
#include "apps/nimbra-host/json_report.h"

#include "apps/nimbra-host/json_value.h"

namespace nimbrahost {

namespace {

/// Elements appended between two checks of the buffer size.
constexpr std::size_t elementsBetweenSpills = 256;

void appendKey(std::string& json, std::string_view key) {
  appendJsonText(json, key);
  json += ": ";
}

void appendEntry(std::string& json, std::string_view key, std::string_view text) {
  appendKey(json, key);
  appendJsonText(json, text);
}

/// The elements of a chunk as a list.
bool writeElements(OutputBuffer& output, const Torvel::ChunkBase& chunk, std::uint64_t most) {
  output.text() += '[';
  bool flowing = true;
  visitElements(chunk, most, [&]<class T>(std::span<const T> elements) {
    for (std::size_t i = 0; i < elements.size() && flowing; ++i) {
      if (i != 0) {
        output.text() += ',';
      }
      appendJsonElement(output.text(), elements[i]);
      if (i % elementsBetweenSpills == 0) {
        flowing = output.spill();
      }
    }
  });
  output.text() += ']';
  return flowing && output.spill();
}

bool writeAttribute(OutputBuffer& output, const Torvel::Attributes::Attribute& attribute) {
  std::string& json = output.text();
  json += "{";
  appendEntry(json, "name", attribute.name);
  json += ", \"type\": ";
  const Torvel::ChunkBase* const chunk = attribute.chunk.get();
  if (chunk == nullptr) {
    json += "null, \"values\": []}";
    return output.spill();
  }
  appendJsonText(json, elementTypeNameOf(*chunk));
  json += ", \"values\": ";
  const bool flowing = writeElements(output, *chunk, ShownValues::all);
  json += '}';
  return flowing;
}

bool writeAttributes(OutputBuffer& output, const Torvel::Attributes& attributes) {
  output.text() += "\"attributes\": [";
  bool flowing = true;
  const char* separator = "";
  for (const Torvel::Attributes::Attribute& attribute : attributes) {
    output.text() += separator;
    flowing = flowing && writeAttribute(output, attribute);
    separator = ", ";
  }
  output.text() += ']';
  return flowing;
}

bool writeFragment(OutputBuffer& output, const Nimbra::Field::Fragment& fragment, std::uint64_t most) {
  std::string& json = output.text();
  json += '{';
  appendEntry(json, "name", fragment.identity ? fragment.identity->name() : std::string());
  const Nimbra::MemBase::Pointer array = fragment.array();
  const std::uint64_t count = array ? array->elementCount() : 0;
  json += ", \"count\": ";
  Nimbra::appendNumber(json, count);
  json += ", \"values\": ";
  const auto chunk = array ? array->chunkBase() : nullptr;
  if (!chunk) {
    json += "[]}";
    return output.spill();
  }
  const bool flowing = writeElements(output, *chunk, std::min(most, count));
  json += '}';
  return flowing;
}

/// The element type of a field that has an array with memory, otherwise null.
void appendFieldType(std::string& json, const Nimbra::Field* field) {
  json += "\"type\": ";
  if (field != nullptr) {
    for (const Nimbra::Field::Fragment& fragment : field->fragments()) {
      const Nimbra::MemBase::Pointer array = fragment.array();
      const auto chunk = array ? array->chunkBase() : nullptr;
      if (chunk) {
        appendJsonText(json, elementTypeNameOf(*chunk));
        return;
      }
    }
  }
  json += "null";
}

bool writeField(OutputBuffer& output, const Nimbra::Representation::Slot& slot, std::uint64_t most) {
  std::string& json = output.text();
  const Nimbra::Field* const field = slot.field.get();
  json += "\n      {";
  appendEntry(json, "name", slot.identity->name());
  json += ", ";
  appendFieldType(json, field);
  json += ",\n       ";
  if (field == nullptr) {
    json += "\"attributes\": [], \"fragments\": []}";
    return output.spill();
  }
  bool flowing = writeAttributes(output, field->attributes());
  json += ",\n       \"fragments\": [";
  const char* separator = "";
  for (const Nimbra::Field::Fragment& fragment : field->fragments()) {
    json += separator;
    flowing = flowing && writeFragment(output, fragment, most);
    separator = ",\n         ";
  }
  json += "]}";
  return flowing;
}

bool writeRepresentations(OutputBuffer& output, const Nimbra::Grid& grid, std::uint64_t most) {
  output.text() += "\"representations\": [";
  bool flowing = true;
  const char* separator = "";
  for (const auto& representation : grid.representations()) {
    output.text() += separator;
    output.text() += "\n    {";
    appendEntry(output.text(), "name", representation->name());
    output.text() += ",\n     \"fields\": [";
    const char* fieldSeparator = "";
    for (const Nimbra::Representation::Slot& slot : representation->fields()) {
      output.text() += fieldSeparator;
      flowing = flowing && writeField(output, slot, most);
      fieldSeparator = ",";
    }
    output.text() += "]}";
    separator = ",";
  }
  output.text() += ']';
  return flowing;
}

void appendOutcome(std::string& json, const LoadRequest& request, const LoadOutcome& outcome) {
  json += '{';
  appendEntry(json, "file", request.file);
  json += ",\n \"result\": ";
  appendJsonText(json, outcome.result);
  json += ",\n \"exception\": ";
  if (outcome.exception) {
    json += '{';
    appendEntry(json, "type", outcome.exception->type);
    json += ", ";
    appendEntry(json, "what", outcome.exception->what);
    json += '}';
  } else {
    json += "null";
  }
  json += ",\n \"console\": [";
  const char* separator = "";
  for (const std::string& line : outcome.console) {
    json += separator;
    appendJsonText(json, line);
    separator = ", ";
  }
  json += "],\n ";
}

bool writeCarrier(OutputBuffer& output, const char* key, const Torvel::Attributes* attributes) {
  output.text() += ",\n  ";
  appendKey(output.text(), key);
  output.text() += '{';
  if (attributes == nullptr) {
    output.text() += "\"attributes\": []}";
    return true;
  }
  const bool flowing = writeAttributes(output, *attributes);
  output.text() += '}';
  return flowing;
}

bool writeWaveform(OutputBuffer& output, const WaveformOutcome& waveform) {
  std::string& json = output.text();
  json += ",\n \"waveform\": {";
  appendEntry(json, "result", waveform.result);
  json += ", ";
  appendEntry(json, "speak", waveform.speak);
  json += ", ";
  appendEntry(json, "error", waveform.error);
  const auto attributesOf = [](const auto& owner) -> const Torvel::Attributes* {
    return owner ? &owner->attributes() : nullptr;
  };
  const bool flowing = writeCarrier(output, "waveformGrid", attributesOf(waveform.waveformGrid)) &&
                       writeCarrier(output, "pointGrid", attributesOf(waveform.pointGrid)) &&
                       writeCarrier(output, "waveformField", attributesOf(waveform.waveformField)) &&
                       writeCarrier(output, "tRefField", attributesOf(waveform.tRefField));
  json += '}';
  return flowing;
}

void appendPicture(std::string& json, const PictureOutcome& picture) {
  json += ",\n \"picture\": {";
  appendEntry(json, "file", picture.file);
  json += ", \"points\": ";
  Nimbra::appendNumber(json, picture.pointCount);
  json += ", \"unitsPerPixel\": ";
  appendJsonNumber(json, picture.unitsPerPixel);
  json += ", ";
  appendEntry(json, "error", picture.error);
  json += '}';
}

} // namespace

bool writeJsonReport(OutputBuffer& output, const LoadRequest& request, const LoadOutcome& outcome,
                     const ShownValues& shown, const PictureOutcome* picture) {
  appendOutcome(output.text(), request, outcome);
  bool flowing = writeAttributes(output, outcome.grid->attributes());
  output.text() += ",\n ";
  flowing = flowing && writeRepresentations(output, *outcome.grid, shown.most);
  if (outcome.rebaseError) {
    output.text() += ",\n ";
    appendEntry(output.text(), "rebaseError", *outcome.rebaseError);
  }
  if (outcome.waveform) {
    flowing = flowing && writeWaveform(output, *outcome.waveform);
  }
  if (picture != nullptr) {
    appendPicture(output.text(), *picture);
  }
  output.text() += "}\n";
  return flowing && output.flush();
}

} // namespace nimbrahost
