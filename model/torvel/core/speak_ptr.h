// SPDX-License-Identifier: BSD-3-Clause
// Reports of the reference scheme when a count goes wrong; nothing here stops the program.
#pragma once

#include "model/torvel/core/api.h"

#include <functional>
#include <string>
#include <typeinfo>

namespace Torvel {

/// The five reports of the reference scheme. Each writes one line to the text sink of the process and
/// returns: the work that found the fault goes on, and a line that can't be written is lost.
/// \threads every operation may be called from any thread
class TORVEL_API SpeakPtr {
 public:
  virtual ~SpeakPtr();

  /// The object that the two non-static reports are called on; lives as long as the process.
  static SpeakPtr& theSpeaker();

  /// A pointer is constructed from itself.
  virtual void SelfConstruction(const std::type_info& pointer, const void* self, const void* record);

  /// A weak hold is released while the weak count isn't positive.
  /// \param pointer,base,object,family  types of the pointer, its common form, what it points at, the family
  virtual void InvalidWeakPtr(const std::type_info& pointer, const std::type_info& base,
                              const std::type_info& object, const std::type_info& family, int strong,
                              int weak, const void* record, const void* live, long long id);

  /// A strong count has reached 0 on a record that is no longer valid.
  static void DynPtrInvalid(const void* record, const void* object, int strong, int weak,
                            const std::type_info& family);

  /// The strong count rose again between its fall to 0 and the destruction; the object lives on.
  static void DestructionCancelled(int strong, int weak, const std::type_info& family);

  /// The pre-destruction hook changed the strong count.
  static void WarningUnctionChange(int strong, int weak, const std::type_info& family);

 protected:
  SpeakPtr();
};

/// Where lines for a person go: standard error, or what the host has set.
using LineSink = std::function<void(const std::string& line)>;

/// Sends all lines of the process (console and reports) to `sink`; an empty one restores standard error.
/// \param sink  called with one line without its end, one call at a time
/// \returns the sink that was set before
/// \threads may be called from any thread; waits for a line that is being written
TORVEL_API LineSink setLineSink(LineSink sink);

/// Writes one line (no line end) to the sink of the process; lines of several threads do not mix.
TORVEL_API void writeLine(const std::string& line);

} // namespace Torvel
