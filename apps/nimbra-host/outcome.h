// SPDX-License-Identifier: BSD-3-Clause
// The request and the outcome of a load.
#pragma once

#include "model/nimbra/grid.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace nimbrahost {

/// What to load, and with which options.
struct LoadRequest {
  std::string file{};
  bool loadAllAttributes = false;
  int epsgCode = 0;           ///< target system of a trajectory
  std::string leverArmFile{}; ///< for a trajectory; empty for none
  bool rebaseTime = false;    ///< shift the time column of a trajectory onto the seconds of the week
  bool waveform = false;      ///< read the waveform metadata as well
};

/// An exception that a call has thrown.
struct Raised {
  std::string type;
  std::string what;
};

using GridPointer = Torvel::StrongPtr<Nimbra::Grid, Nimbra::Grid::Family>;

/// The metadata for waveform processing, and the attributes that they set on two grids and two fields.
struct WaveformOutcome {
  std::string result{}; ///< text that the reading returned, empty on success
  std::string speak{};  ///< the values as text for people
  std::string error{};  ///< why the file could not be opened or the values could not be attached
  GridPointer waveformGrid{}, pointGrid{};
  Nimbra::Field::Pointer waveformField{}, tRefField{};

  bool failed() const { return !result.empty() || !error.empty(); }
};

/// The state after a load, successful or not.
struct LoadOutcome {
  GridPointer grid;
  std::string result; ///< text that the load returned, empty on success
  std::optional<Raised> exception;
  std::vector<std::string> console; ///< lines written during the load, without line ends
  double loadSeconds = 0;           ///< duration of the load alone
  std::optional<std::string> rebaseError;
  std::optional<WaveformOutcome> waveform;

  /// Whether everything requested has been done.
  bool succeeded() const {
    return result.empty() && !exception && (!rebaseError || rebaseError->empty()) &&
           (!waveform || !waveform->failed());
  }
};

/// How many elements of each column to show.
struct ShownValues {
  static constexpr std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t most = 0;
};

} // namespace nimbrahost
