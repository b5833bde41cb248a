// SPDX-License-Identifier: BSD-3-Clause
// Text on its way to a stream, gathered so that millions of short pieces cost few writes and little memory.
#pragma once

#include <ostream>
#include <string>

namespace nimbrahost {

/// Collects text and hands it to a stream in pieces. \threads one thread at a time
class OutputBuffer {
 public:
  explicit OutputBuffer(std::ostream& destination) : stream(destination) { pending.reserve(2 * pieceBytes); }

  /// The text that waits; whoever writes appends to it.
  std::string& text() { return pending; }

  /// Call it every few hundred characters: hands the text on when enough has gathered.
  /// \returns false when the stream has failed and further text would be lost
  bool spill() { return pending.size() < pieceBytes ? stream.good() : flush(); }

  /// Hands everything on. \returns whether all text has reached the stream
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
