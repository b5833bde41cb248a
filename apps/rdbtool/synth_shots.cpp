// SPDX-License-Identifier: BSD-3-Clause
// The columns of a synthetic database of shots, one record per laser pulse. The one long function is a table: name,
// type and value.
#include "apps/rdbtool/millimetre_grid.h"
#include "apps/rdbtool/seeded_noise.h"
#include "apps/rdbtool/synth.h"

namespace rdbtool {

namespace {

/// Samples of the waveform block of every shot.
constexpr std::uint64_t samplesPerBlock = 80;
/// A block begins this long before its first echo, seconds.
constexpr double leadSeconds = 10e-9;

double strength(const Shot& shot, std::uint64_t stream) {
  return unitInterval(mixBits(shot.chance, stream));
}

float sampleMean(const Shot& shot) {
  return static_cast<float>(420 + 160 * strength(shot, 20));
}

using Bytes = std::byte*;

std::vector<ShotColumn> makeColumns() {
  using enum ElementType;
  return {
      {attribute("riegl.wfm_sbl_time_offset", int32),
       [](const Shot& s, Bytes to) {
         const double echoSeconds = 2 * s.echoes.at[0].range / groupVelocity - leadSeconds;
         store(to, static_cast<std::int32_t>(echoSeconds / tickSeconds));
       }},
      {attribute("riegl.id", uint64), [](const Shot& s, Bytes to) { store(to, s.number + 1); }},
      {attribute("riegl.wfm_sbl_channel", uint8),
       [](const Shot& s, Bytes to) { store(to, static_cast<std::uint8_t>(s.chance >> 63)); }},
      {attribute("riegl.wfm_sbl_mean", float32), [](const Shot& s, Bytes to) { store(to, sampleMean(s)); }},
      {attribute("riegl.wfm_sbl_std_dev", float32),
       [](const Shot& s, Bytes to) { store(to, static_cast<float>(12 + 30 * strength(s, 21))); }},
      {attribute("riegl.wfm_sda_first", uint64),
       [](const Shot& s, Bytes to) { store(to, s.number * samplesPerBlock); }},
      {attribute("riegl.wfm_sda_count", uint16),
       [](const Shot&, Bytes to) { store(to, static_cast<std::uint16_t>(samplesPerBlock)); }},
      {attribute("riegl.wfm_sample_value", uint16),
       [](const Shot& s, Bytes to) {
         store(to, static_cast<std::uint16_t>(sampleMean(s) + 30 * strength(s, 22)));
       }},
      {attribute("riegl.line_angle_coarse", float32, "deg"),
       [](const Shot& s, Bytes to) { store(to, static_cast<float>(s.mirrorTurns * 360)); }},
      {attribute("riegl.shot_origin", float64, "m", 3),
       [](const Shot& s, Bytes to) { store(to, onMillimetreGrid(s.origin, surveyOffset)); },
       millimetres(surveyOffset)},
      {attribute("riegl.shot_direction", float64, {}, 3),
       [](const Shot& s, Bytes to) { store(to, s.direction); }},
      {attribute("riegl.echo_first", uint64), [](const Shot& s, Bytes to) { store(to, s.firstEcho); }},
      {attribute("riegl.echo_count", uint16),
       [](const Shot& s, Bytes to) { store(to, static_cast<std::uint16_t>(s.echoes.count)); }},
      {attribute("riegl.shot_timestamp_hr", uint64, "4ps"),
       [](const Shot& s, Bytes to) { store(to, s.ticks); }},
      {attribute("riegl.wfm_sbl_first", uint64), [](const Shot& s, Bytes to) { store(to, s.number); }},
      {attribute("riegl.wfm_sbl_count", uint16), [](const Shot&, Bytes to) { store(to, std::uint16_t{1}); }},
      {attribute("riegl.raw_range", float64, "m"),
       [](const Shot& s, Bytes to) { store(to, onMillimetreGrid(s.echoes.at[0].range)); },
       millimetres(scannerOffset, 1)},
      {attribute("riegl.gain", float32, "dB"),
       [](const Shot& s, Bytes to) { store(to, static_cast<float>(18 + 4 * strength(s, 23))); }},
  };
}

} // namespace

const std::vector<ShotColumn>& shotColumns() {
  static const std::vector<ShotColumn> columns = makeColumns();
  return columns;
}

} // namespace rdbtool
