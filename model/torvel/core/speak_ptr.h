// SPDX-License-Identifier: BSD-3-Clause
// Reports of count errors in the reference scheme, and the sink of all lines that the process prints.
#pragma once

#include "model/torvel/core/api.h"

#include <functional>
#include <string>
#include <typeinfo>

namespace Torvel {

/// The five reports of the reference scheme. Each writes one line to the sink of the process and returns; the
/// operation that found the error goes on.
///
/// \errors  none: a line that can't be written is lost
/// \threads safe
class TORVEL_API SpeakPtr {
 public:
  virtual ~SpeakPtr();

  /// \return the object that the two non-static reports are called on; lives as long as the process
  static SpeakPtr& theSpeaker();

  /// Reports a pointer that is constructed from itself.
  /// \param pointer  type of the pointer
  /// \param self,record  addresses of the pointer and of its count record
  virtual void SelfConstruction(const std::type_info& pointer, const void* self, const void* record);

  /// Reports a weak hold that is released while the weak count isn't positive.
  /// \param pointer,base,object,family  types of the pointer, of its base, of the object, of the family
  /// \param strong,weak  the counts before the release
  /// \param record,live  addresses of the count record and of the object, which may be null
  /// \param id  serial number of the pointer
  virtual void InvalidWeakPtr(const std::type_info& pointer, const std::type_info& base,
                              const std::type_info& object, const std::type_info& family, int strong,
                              int weak, const void* record, const void* live, long long id);

  /// Reports a strong count that has reached 0 on a record that is no longer valid.
  static void DynPtrInvalid(const void* record, const void* object, int strong, int weak,
                            const std::type_info& family);

  /// Reports a strong count that rose again between its fall to 0 and the destruction; the object stays
  /// alive.
  static void DestructionCancelled(int strong, int weak, const std::type_info& family);

  /// Reports a pre-destruction hook that changed the strong count.
  static void WarningUnctionChange(int strong, int weak, const std::type_info& family);

 protected:
  SpeakPtr();
};

/// Receives each line of text that the library prints, without a line end.
using LineSink = std::function<void(const std::string& line)>;

/// Sends all lines of the process (console and reports) to `sink`.
///
/// \param sink  copied; called with one line at a time, from the thread that prints it; empty restores
/// standard error
/// \return the sink that was set before
/// \threads safe; waits for a line that is being written
TORVEL_API LineSink setLineSink(LineSink sink);

/// Writes one line to the sink of the process, or to standard error where no sink is set.
///
/// \param line  without a line end
/// \errors  those of the sink; std::bad_alloc
/// \threads safe; lines of several threads do not mix
TORVEL_API void writeLine(const std::string& line);

} // namespace Torvel
