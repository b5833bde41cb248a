// SPDX-License-Identifier: BSD-3-Clause
// A buffer in front of a stream, so that millions of short texts cost few writes and little memory.
#pragma once

#include <ostream>
#include <string>

namespace nimbrahost {

/// Collects text and writes it to a stream in large pieces. \threads one thread at a time
class OutputBuffer {
 public:
  explicit OutputBuffer(std::ostream& destination) : stream(destination) { pending.reserve(2 * pieceBytes); }

  /// The text not yet written; callers append to it.
  std::string& text() { return pending; }

  /// Writes the text if enough has been collected. Call it every few hundred characters.
  /// \return false when the stream has failed and further text would be lost
  bool spill() { return pending.size() < pieceBytes ? stream.good() : flush(); }

  /// Writes everything. \return whether the stream has accepted it
  bool flush() {
    stream.write(pending.data(), static_cast<std::streamsize>(pending.size()));
    pending.clear();
    stream.flush();
    return stream.good();
  }

 private:
  static constexpr std::size_t pieceBytes = 256 * 1024;

  std::ostream& stream;
  std::string pending;
};

} // namespace nimbrahost
