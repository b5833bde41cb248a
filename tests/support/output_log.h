// SPDX-License-Identifier: BSD-3-Clause
// Records std::cerr and the console in one list, in the order of the output.
#pragma once

#include "model/torvel/core/speak_ptr.h"

#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// Records output while it lives. An entry is "console|" and a console line without its end, or "cerr|" and
/// the bytes up to a flush of std::cerr, line end included; output without a flush makes no entry.
class OutputLog {
 public:
  OutputLog()
      : flushes(*this), before(std::cerr.rdbuf(&flushes)), flags(std::cerr.flags()),
        sink(Torvel::setLineSink([this](const std::string& line) { entries.push_back("console|" + line); })) {
    std::cerr.unsetf(std::ios::unitbuf);
  }
  OutputLog(const OutputLog&) = delete;
  OutputLog& operator=(const OutputLog&) = delete;
  ~OutputLog() {
    Torvel::setLineSink(std::move(sink));
    std::cerr.flags(flags);
    std::cerr.rdbuf(before);
  }

  /// The entries so far.
  const std::vector<std::string>& said() const { return entries; }
  void forget() { entries.clear(); }

 private:
  class Flushes : public std::stringbuf {
   public:
    explicit Flushes(OutputLog& owner) : log(owner) {}
    int sync() override {
      log.entries.push_back("cerr|" + str());
      str("");
      return 0;
    }

   private:
    OutputLog& log;
  };

  std::vector<std::string> entries;
  Flushes flushes;
  std::streambuf* before;
  std::ios::fmtflags flags;
  Torvel::LineSink sink;
};

} // namespace support
