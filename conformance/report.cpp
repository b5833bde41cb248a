// SPDX-License-Identifier: BSD-3-Clause
// Writes the outcomes.
#include "conformance/report.h"

#include <algorithm>
#include <ostream>

namespace conformance {

namespace {

std::ptrdiff_t brokenOf(const std::vector<Outcome>& outcomes) {
  return std::count_if(outcomes.begin(), outcomes.end(),
                       [](const Outcome& outcome) { return !outcome.kept; });
}

/// Text for an attribute's value or an element. XML 1.0 has no form for most control characters, and the texts of a
/// client may be in any encoding.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char character : text) {
    switch (character) {
    case '&':
      result += "&amp;";
      break;
    case '<':
      result += "&lt;";
      break;
    case '>':
      result += "&gt;";
      break;
    case '"':
      result += "&quot;";
      break;
    default:
      result += character >= 0x20 && character < 0x7F ? character : '?';
    }
  }
  return result;
}

} // namespace

void writeLine(std::ostream& stream, const Promise& promise, const Outcome& outcome) {
  stream << (outcome.kept ? "pass  " : "FAIL  ") << promise.name << '\n';
  if (!outcome.kept) {
    stream << "        expected  " << outcome.expectation << "\n        found     " << outcome.finding
           << '\n';
  }
  stream.flush();
}

void writeTotal(std::ostream& stream, const std::vector<Outcome>& outcomes) {
  const std::ptrdiff_t broken = brokenOf(outcomes);
  stream << outcomes.size() << " promises: " << static_cast<std::ptrdiff_t>(outcomes.size()) - broken
         << " kept, " << broken << " broken" << std::endl;
}

void writeList(std::ostream& stream) {
  stream << "| Promise | Rule | What relies on it |\n|---|---|---|\n";
  for (const Promise& promise : promises()) {
    stream << "| " << promise.name << " | " << promise.sentence << " | " << promise.reliance << " |\n";
  }
}

void writeJUnit(std::ostream& stream, const std::vector<Promise>& checked,
                const std::vector<Outcome>& outcomes) {
  double seconds = 0;
  for (const Outcome& outcome : outcomes) {
    seconds += outcome.seconds;
  }
  stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"rdb-conformance\" tests=\""
         << outcomes.size() << "\" failures=\"" << brokenOf(outcomes)
         << "\" errors=\"0\" skipped=\"0\" time=\"" << seconds << "\">\n";
  for (std::size_t i = 0; i < checked.size(); ++i) {
    stream << "  <testcase classname=\"rdb-conformance\" name=\"" << checked[i].name << "\" time=\""
           << outcomes[i].seconds << '"';
    if (outcomes[i].kept) {
      stream << "/>\n";
      continue;
    }
    stream << ">\n    <failure message=\""
           << escaped("expected " + outcomes[i].expectation + ", found " + outcomes[i].finding) << "\">"
           << escaped(checked[i].sentence) << "</failure>\n  </testcase>\n";
  }
  stream << "</testsuite>\n";
}

} // namespace conformance
