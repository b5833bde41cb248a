// SPDX-License-Identifier: BSD-3-Clause
// Parses the lever-arm and misalignment file.
#include "loader/trajectory/lever_arm.h"

#include "model/torvel/references/chunk.h"

#include <fstream>
#include <locale.h>
#include <vector>

namespace Riegl {

namespace {

using Triple = Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase>;

/// The two vectors of a file; null until their line has been read.
struct Vectors {
  Triple leverArm;
  Triple misalignment;
};

/// Makes this thread read numbers with a decimal point during its lifetime. In a host's locale with a decimal
/// comma "0.1" would be 0.
class DecimalPoint {
 public:
  DecimalPoint() : before(uselocale(classic())) {}
  DecimalPoint(const DecimalPoint&) = delete;
  DecimalPoint& operator=(const DecimalPoint&) = delete;
  ~DecimalPoint() { uselocale(before); }

 private:
  static locale_t classic() {
    static const locale_t made = newlocale(LC_ALL_MASK, "C", locale_t{});
    return made;
  }

  const locale_t before;
};

/// Splits at every colon and keeps empty tokens, also the last; a NUL byte ends the line.
std::vector<std::string> splitAtColons(const std::string& line) {
  const std::string text(line.c_str()); // NOLINT(readability-redundant-string-cstr): ends at a NUL
  std::vector<std::string> tokens;
  std::size_t start = 0;
  for (std::size_t colon = text.find(':'); colon != std::string::npos; colon = text.find(':', start)) {
    tokens.push_back(text.substr(start, colon - start));
    start = colon + 1;
  }
  tokens.push_back(text.substr(start));
  return tokens;
}

/// Reads one line. A read error ends the file, as its end does.
///
/// \param file  must have `badbit` among its exceptions: without it std::getline swallows std::bad_alloc
/// \return whether a line was read
bool nextLine(std::ifstream& file, std::string& line) {
  try {
    return static_cast<bool>(std::getline(file, line));
  } catch (const std::ios_base::failure&) {
    return false;
  }
}

/// \return empty, or the text for a line of the wrong form
std::string readLine(const std::string& line, Vectors& vectors) {
  const std::vector<std::string> tokens = splitAtColons(line);
  if (tokens.size() != 4) {
    return "pofx2nimbra::addLeverArm_Misalignment: cannot parse file. size is: " +
           std::to_string(tokens.size());
  }
  const bool isLeverArm = tokens[0] == "leverarm";
  if (!isLeverArm && tokens[0] != "misalignment") {
    return "pofx2nimbra::addLeverArm_Misalignment: cannot parse file. key is wrong";
  }
  Triple& triple = isLeverArm ? vectors.leverArm : vectors.misalignment;
  triple = Triple(new Torvel::Chunk<double>(3));
  for (std::size_t i = 0; i < 3; ++i) {
    triple->values()[i] = std::stod(tokens[i + 1]);
  }
  return std::string();
}

} // namespace

std::string addLeverArm_Misalignment(Nimbra::Grid& grid, const std::string& path) {
  if (path.empty()) {
    return std::string();
  }
  std::ifstream file(path);
  if (!file) {
    return "pofx2nimbra:Error opening leverarm file: " + path;
  }
  file.exceptions(std::ios_base::badbit);
  const DecimalPoint decimalMark;
  Vectors vectors;
  for (std::string line; nextLine(file, line);) {
    const std::string failure = readLine(line, vectors);
    if (!failure.empty()) {
      return failure;
    }
  }
  if (!vectors.leverArm || !vectors.misalignment) {
    return "pofx2nimbra::addLeverArm_Misalignment: cannot parse file";
  }
  grid.attributes().setAttribute("LeverArm", vectors.leverArm);
  grid.attributes().setAttribute("Misalignment", vectors.misalignment);
  return std::string();
}

} // namespace Riegl
