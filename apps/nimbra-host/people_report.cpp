// SPDX-License-Identifier: BSD-3-Clause
// Writes the report: the outcome first, then each representation as a table of its columns.
#include "apps/nimbra-host/people_report.h"

#include "apps/common/printable_text.h"
#include "apps/nimbra-host/column_summary.h"
#include "apps/nimbra-host/elements.h"
#include "apps/nimbra-host/people_text.h"
#include "arrays/nimbra/element_text.h"

#include <algorithm>
#include <set>

namespace nimbrahost {

namespace {

using apps::printable;

constexpr std::size_t labelWidth = 10;
constexpr std::size_t nameWidth = 27;
constexpr std::size_t widestAttributeName = 40;
constexpr std::size_t typeWidth = 18;
constexpr std::size_t numberWidth = 12;
constexpr std::size_t pageWidth = 100;
constexpr std::size_t mostFragmentsListed = 20;

void addLabelled(std::string& text, std::string_view label, std::string_view content) {
  text += leftAligned(label, labelWidth) + printable(content) + "\n";
}

template <class T>
std::string elementText(const T& element) {
  if constexpr (std::is_same_v<T, std::string>) {
    return printable(element);
  } else {
    return Nimbra::elementAsText(element);
  }
}

/// The amount of data on a grid.
struct GridSize {
  std::uint64_t bytes = 0;
  std::uint64_t records = 0; ///< elements of the longest column
};

GridSize sizeOf(const Nimbra::Grid& grid) {
  GridSize size;
  std::set<const Torvel::ChunkBase*> seen;
  for (const auto& representation : grid.representations()) {
    for (const Nimbra::Representation::Slot& slot : representation->fields()) {
      std::uint64_t records = 0;
      for (std::size_t i = 0; slot.field && i < slot.field->fragments().size(); ++i) {
        const Nimbra::MemBase::Pointer array = slot.field->fragments()[i].array();
        const auto chunk = array ? array->chunkBase() : nullptr;
        records += array ? array->elementCount() : 0;
        if (chunk && seen.insert(chunk.get()).second) {
          size.bytes += chunk->elementCount() * chunk->elementBytes();
        }
      }
      size.records = std::max(size.records, records);
    }
  }
  return size;
}

std::string resultText(const LoadOutcome& outcome) {
  if (outcome.exception) {
    return "raised " + outcome.exception->type + ": " + outcome.exception->what;
  }
  return outcome.result.empty() ? "loaded" : "failed: " + outcome.result;
}

std::string loadText(const LoadOutcome& outcome) {
  const GridSize size = sizeOf(*outcome.grid);
  std::string text = fixedPoint(outcome.loadSeconds, 3) + " s, " + counted(size.records, "record") + ", " +
                     byteText(static_cast<double>(size.bytes)) + " on the grid";
  if (outcome.loadSeconds > 0 && size.bytes > 0) {
    text += ", " + byteText(static_cast<double>(size.bytes) / outcome.loadSeconds) + "/s";
  }
  return text;
}

void addOutcome(std::string& text, const LoadRequest& request, const LoadOutcome& outcome,
                const PictureOutcome* picture) {
  addLabelled(text, "File", request.file);
  addLabelled(text, "Result", resultText(outcome));
  addLabelled(text, "Load", loadText(outcome));
  if (outcome.rebaseError) {
    addLabelled(text, "Rebasing", outcome.rebaseError->empty() ? "done" : "failed: " + *outcome.rebaseError);
  }
  if (picture != nullptr) {
    std::string drawn = picture->file + ", " + counted(picture->pointCount, "point");
    if (picture->unitsPerPixel > 0) {
      drawn += ", one pixel is " + Nimbra::elementAsText(static_cast<float>(picture->unitsPerPixel));
    }
    addLabelled(text, "Picture", picture->error.empty() ? drawn : "failed: " + picture->error);
  }
  addLabelled(text, "Console",
              outcome.console.empty() ? "no lines" : counted(outcome.console.size(), "line"));
  for (const std::string& line : outcome.console) {
    text += indented(line, 2);
  }
}

/// As many elements of an attribute as fit on the line.
std::string attributeValues(const Torvel::ChunkBase& chunk, std::size_t room) {
  const std::string ending = chunk.elementCount() == 1 ? " ..." : " ... of " + grouped(chunk.elementCount());
  std::string text;
  std::size_t fitting = 0;
  visitElements(chunk, room, [&]<class T>(std::span<const T> elements) {
    for (std::size_t i = 0; i < elements.size() && text.size() <= room; ++i) {
      fitting = text.size() + ending.size() <= room ? text.size() : fitting;
      text += (i == 0 ? "" : componentsOf<T>() > 1 ? ", " : " ") + elementText(elements[i]);
    }
  });
  if (text.size() <= room) {
    return text;
  }
  if (fitting == 0) {
    fitting = room - ending.size();
    while (fitting > 0 && (static_cast<unsigned char>(text[fitting]) & 0xc0) == 0x80) {
      --fitting;
    }
  }
  return text.substr(0, fitting) + ending;
}

void addAttribute(std::string& text, const Torvel::Attributes::Attribute& attribute, std::size_t indent,
                  std::size_t width) {
  const Torvel::ChunkBase* const chunk = attribute.chunk.get();
  std::string line = std::string(indent, ' ') + leftAligned("@ " + printable(attribute.name), width) + " " +
                     leftAligned(chunk != nullptr ? elementTypeNameOf(*chunk) : "no value", typeWidth);
  if (chunk != nullptr) {
    const std::size_t used = characterCount(line) + 1;
    line += " " + attributeValues(*chunk, used + 20 < pageWidth ? pageWidth - used : 20);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  text += line + "\n";
}

void addAttributes(std::string& text, const Torvel::Attributes& attributes, std::size_t indent) {
  std::size_t width = nameWidth + 2 - indent;
  for (const Torvel::Attributes::Attribute& attribute : attributes) {
    width = std::max(width, std::min(characterCount("@ " + printable(attribute.name)), widestAttributeName));
  }
  for (const Torvel::Attributes::Attribute& attribute : attributes) {
    addAttribute(text, attribute, indent, width);
  }
}

std::string componentLabel(const ColumnSummary& summary, std::size_t number) {
  if (summary.components.size() == 1) {
    return "";
  }
  return std::string(1, (summary.typeName == "rgba" ? "rgba" : "xyzw")[number]);
}

void addTableHead(std::string& text) {
  text += "  " + leftAligned("Field", nameWidth) + " " + leftAligned("Type", typeWidth);
  for (const char* const title : {"First", "Last", "Minimum", "Maximum"}) {
    text += " " + rightAligned(title, numberWidth);
  }
  text += "\n";
}

void addRow(std::string& text, const std::string& name, const std::string& type,
            const ComponentSummary& cells) {
  std::string row = "  " + leftAligned(name, nameWidth) + " " + leftAligned(type, typeWidth);
  for (const std::string& cell : {cells.first, cells.last, cells.minimum, cells.maximum}) {
    row += " " + rightAligned(printable(cell), numberWidth);
  }
  row.erase(row.find_last_not_of(' ') + 1);
  text += row + "\n";
}

/// One row per component; the first has the name and the type.
void addField(std::string& text, const Nimbra::Representation::Slot& slot) {
  const ColumnSummary summary = slot.field ? summarise(*slot.field, numberWidth) : ColumnSummary();
  std::string name = printable(slot.identity->name());
  if (characterCount(name) + (summary.components.size() > 1 ? 2 : 0) > nameWidth) {
    text += "  " + name + "\n";
    name.clear();
  }
  const std::string type = summary.typeName.empty() ? "no data" : summary.typeName;
  if (summary.components.empty()) {
    addRow(text, name, type, {});
  }
  for (std::size_t number = 0; number < summary.components.size(); ++number) {
    const std::string label = componentLabel(summary, number);
    const std::string lead = number == 0 ? name : std::string(characterCount(name), ' ');
    addRow(text, label.empty() ? lead : lead + " " + label, number == 0 ? type : "",
           summary.components[number]);
  }
  if (slot.field) {
    addAttributes(text, slot.field->attributes(), 4);
  }
}

using FragmentCounts = std::vector<std::pair<std::string, std::uint64_t>>;

FragmentCounts fragmentCounts(const Nimbra::Representation::Slot& slot) {
  FragmentCounts counts;
  for (std::size_t i = 0; slot.field && i < slot.field->fragments().size(); ++i) {
    const Nimbra::Field::Fragment& fragment = slot.field->fragments()[i];
    const Nimbra::MemBase::Pointer array = fragment.array();
    counts.emplace_back(fragment.identity ? fragment.identity->name() : "",
                        array ? array->elementCount() : 0);
  }
  return counts;
}

std::string cut(const std::string& text, std::size_t width) {
  return text.size() <= width ? text : text.substr(0, text.rfind(',', width)) + " and others";
}

/// The fragments of the fields, one list per group of fields with equal fragments.
void addFragments(std::string& text, const Nimbra::Representation& representation) {
  std::vector<std::pair<FragmentCounts, std::string>> lists;
  for (const Nimbra::Representation::Slot& slot : representation.fields()) {
    const FragmentCounts counts = fragmentCounts(slot);
    const auto same =
        std::find_if(lists.begin(), lists.end(), [&](auto& list) { return list.first == counts; });
    if (same == lists.end()) {
      lists.emplace_back(counts, slot.identity->name());
    } else {
      same->second += ", " + slot.identity->name();
    }
  }
  for (const auto& [counts, names] : lists) {
    const std::string owners = lists.size() == 1 ? "every field" : cut(printable(names), pageWidth - 30);
    text += "  " + counted(counts.size(), "fragment") + " of " + owners + "\n";
    for (std::size_t i = 0; i < std::min(counts.size(), mostFragmentsListed); ++i) {
      text += "    " + leftAligned(printable(counts[i].first), nameWidth - 2) + " " +
              rightAligned(grouped(counts[i].second), numberWidth) + "\n";
    }
    if (counts.size() > mostFragmentsListed) {
      text += "    and " + counted(counts.size() - mostFragmentsListed, "more fragment") + "\n";
    }
  }
}

/// The first elements of each fragment, one per line.
bool writeValues(OutputBuffer& output, const Nimbra::Representation::Slot& slot, std::uint64_t most) {
  bool flowing = true;
  for (std::size_t i = 0; slot.field && i < slot.field->fragments().size(); ++i) {
    const Nimbra::Field::Fragment& fragment = slot.field->fragments()[i];
    const Nimbra::MemBase::Pointer array = fragment.array();
    const auto chunk = array ? array->chunkBase() : nullptr;
    if (!chunk) {
      continue;
    }
    output.text() += "  " + printable(slot.identity->name()) + ", " +
                     printable(fragment.identity ? fragment.identity->name() : "") + "\n";
    const std::uint64_t count = std::min(most, array->elementCount());
    visitElements(*chunk, count, [&]<class T>(std::span<const T> elements) {
      for (std::size_t number = 0; number < elements.size() && flowing; ++number) {
        output.text() += rightAligned(std::to_string(number), numberWidth);
        output.text() += "  " + elementText(elements[number]) + "\n";
        flowing = output.spill();
      }
    });
  }
  return flowing;
}

bool writeRepresentation(OutputBuffer& output, const Nimbra::Representation& representation,
                         const ShownValues& shown) {
  std::string& text = output.text();
  text += "\n" + printable(representation.name()) + ": " + counted(representation.fields().size(), "field") +
          "\n";
  if (!representation.fields().empty()) {
    addTableHead(text);
  }
  for (const Nimbra::Representation::Slot& slot : representation.fields()) {
    addField(text, slot);
  }
  addFragments(text, representation);
  bool flowing = output.spill();
  for (const Nimbra::Representation::Slot& slot : representation.fields()) {
    flowing = flowing && (shown.most == 0 || writeValues(output, slot, shown.most));
  }
  return flowing;
}

void addCarrier(std::string& text, const char* title, const Torvel::Attributes& attributes) {
  text += std::string("  ") + title + ": " + counted(attributes.size(), "attribute") + "\n";
  addAttributes(text, attributes, 4);
}

void addWaveform(std::string& text, const WaveformOutcome& waveform) {
  text += "\nWaveform processing\n";
  if (waveform.failed()) {
    text += "  failed: " + printable(waveform.result + waveform.error) + "\n";
  }
  text += indented(waveform.speak, 2);
  addCarrier(text, "Waveform grid", waveform.waveformGrid->attributes());
  addCarrier(text, "Point grid", waveform.pointGrid->attributes());
  addCarrier(text, "Waveform field", waveform.waveformField->attributes());
  addCarrier(text, "Time reference field", waveform.tRefField->attributes());
}

} // namespace

bool writePeopleReport(OutputBuffer& output, const LoadRequest& request, const LoadOutcome& outcome,
                       const ShownValues& shown, const PictureOutcome* picture) {
  std::string& text = output.text();
  addOutcome(text, request, outcome, picture);
  if (!outcome.grid->attributes().empty()) {
    text += "\nGrid: " + counted(outcome.grid->attributes().size(), "attribute") + "\n";
    addAttributes(text, outcome.grid->attributes(), 2);
  }
  bool flowing = true;
  for (const auto& representation : outcome.grid->representations()) {
    flowing = flowing && writeRepresentation(output, *representation, shown);
  }
  if (outcome.waveform) {
    addWaveform(text, *outcome.waveform);
  }
  return flowing && output.flush();
}

void reportFailures(const LoadRequest& request, const LoadOutcome& outcome, const PictureOutcome* picture,
                    std::ostream& err) {
  const auto report = [&err, &request](const std::string& text) {
    apps::printLine(err, "nimbra-host: " + request.file + ": " + text);
  };
  if (outcome.exception || !outcome.result.empty()) {
    report(resultText(outcome));
  }
  if (outcome.rebaseError && !outcome.rebaseError->empty()) {
    report("time not rebased: " + *outcome.rebaseError);
  }
  if (outcome.waveform && outcome.waveform->failed()) {
    report("waveform metadata not read: " + outcome.waveform->result + outcome.waveform->error);
  }
  if (picture != nullptr && !picture->error.empty()) {
    report("picture not drawn: " + picture->error);
  }
}

} // namespace nimbrahost
