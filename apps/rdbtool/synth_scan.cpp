// SPDX-License-Identifier: BSD-3-Clause
// The columns of a synthetic scan, one record per echo. The one long function is a table: name, type and value.
#include "apps/rdbtool/millimetre_grid.h"
#include "apps/rdbtool/seeded_noise.h"
#include "apps/rdbtool/synth.h"

#include <algorithm>

namespace rdbtool {

namespace {

/// Random bits of one echo, independent for each `stream`.
std::uint64_t chanceOf(const Shot& shot, unsigned echo, std::uint64_t stream) {
  return mixBits(shot.chance + echo, stream);
}

const Reflection& reflection(const Shot& shot, unsigned echo) {
  return shot.echoes.at[echo];
}

Vector3 placeOf(const Shot& shot, unsigned echo) {
  const double range = reflection(shot, echo).range;
  return onMillimetreGrid({shot.origin[0] + range * shot.gridScale * shot.direction[0],
                           shot.origin[1] + range * shot.gridScale * shot.direction[1],
                           shot.origin[2] + range * shot.direction[2]},
                          surveyOffset);
}

Vector3 scannerPlaceOf(const Shot& shot, unsigned echo) {
  const double range = reflection(shot, echo).range;
  return onMillimetreGrid(
      {range * shot.scannerDirection[0], range * shot.scannerDirection[1], range * shot.scannerDirection[2]},
      scannerOffset);
}

/// Reflectance of a surface in decibels.
double reflectanceOf(const Shot& shot, unsigned echo) {
  const Surface surface = reflection(shot, echo).surface;
  const double mean = surface == Surface::building ? -5 : surface == Surface::vegetation ? -11 : -8;
  return mean + 2.5 * peaked(chanceOf(shot, echo, 1));
}

/// Amplitude in decibels above the threshold; it falls with the range.
double amplitudeOf(const Shot& shot, unsigned echo) {
  return 34 + reflectanceOf(shot, echo) - 0.0145 * (reflection(shot, echo).range - 600);
}

std::array<std::uint8_t, 4> colourOf(const Shot& shot, unsigned echo) {
  const Surface surface = reflection(shot, echo).surface;
  const auto shade = static_cast<int>(24 * peaked(chanceOf(shot, echo, 2)));
  const auto tone = [shade](int value) {
    return static_cast<std::uint8_t>(std::clamp(value + shade, 0, 255));
  };
  if (surface == Surface::building) {
    return {tone(164), tone(92), tone(80), 255};
  }
  return surface == Surface::vegetation ? std::array<std::uint8_t, 4>{tone(58), tone(112), tone(48), 255}
                                        : std::array<std::uint8_t, 4>{tone(140), tone(128), tone(92), 255};
}

Attribute scaled(const std::string& name, ElementType type, const std::string& unit, double scale) {
  Attribute spec = attribute(name, type, unit);
  spec.scale = scale;
  return spec;
}

using Bytes = std::byte*;

std::vector<ScanColumn> makeColumns() {
  using enum ElementType;
  return {
      {attribute("riegl.xyz", float64, "m", 3),
       [](const Shot& s, unsigned e, Bytes to) { store(to, placeOf(s, e)); }, millimetres(surveyOffset)},
      {attribute("riegl.timestamp", float64, "s"),
       [](const Shot& s, unsigned, Bytes to) { store(to, s.seconds); }},
      {attribute("riegl.xyz_socs", float64, "m", 3),
       [](const Shot& s, unsigned e, Bytes to) { store(to, scannerPlaceOf(s, e)); },
       millimetres(scannerOffset)},
      {attribute("riegl.direction_medium", float32, {}, 3),
       [](const Shot& s, unsigned, Bytes to) {
         store(to,
               std::array<float, 3>{static_cast<float>(s.direction[0]), static_cast<float>(s.direction[1]),
                                    static_cast<float>(s.direction[2])});
       }},
      {attribute("riegl.amplitude", float32, "dB"),
       [](const Shot& s, unsigned e, Bytes to) { store(to, static_cast<float>(amplitudeOf(s, e))); }},
      {attribute("riegl.reflectance", float32, "dB"),
       [](const Shot& s, unsigned e, Bytes to) { store(to, static_cast<float>(reflectanceOf(s, e))); }},
      {attribute("riegl.deviation", int16),
       [](const Shot& s, unsigned e, Bytes to) {
         const bool soft = reflection(s, e).surface == Surface::vegetation;
         store(to, static_cast<std::int16_t>(unitInterval(chanceOf(s, e, 3)) * (soft ? 60 : 12)));
       }},
      {attribute("riegl.pulse_width", float32, "ns"),
       [](const Shot& s, unsigned e, Bytes to) {
         store(to, static_cast<float>(4.2 + 0.3 * peaked(chanceOf(s, e, 4))));
       }},
      {attribute("riegl.target_index", uint8),
       [](const Shot&, unsigned e, Bytes to) { store(to, static_cast<std::uint8_t>(e + 1)); }},
      {attribute("riegl.target_count", uint8),
       [](const Shot& s, unsigned, Bytes to) { store(to, static_cast<std::uint8_t>(s.echoes.count)); }},
      {attribute("riegl.mirror_facet", uint8),
       [](const Shot& s, unsigned, Bytes to) { store(to, static_cast<std::uint8_t>(s.facet + 1)); }},
      {attribute("riegl.scan_segment", uint8),
       [](const Shot&, unsigned, Bytes to) { store(to, std::uint8_t{0}); }},
      {attribute("riegl.mta_uncertain_point", uint8),
       [](const Shot& s, unsigned e, Bytes to) {
         store(to, static_cast<std::uint8_t>(chanceOf(s, e, 5) % 1000 == 0));
       }},
      {attribute("riegl.mta_zone", uint8),
       [](const Shot&, unsigned, Bytes to) { store(to, std::uint8_t{1}); }},
      {attribute("riegl.window_echo_impact_corrected", uint8),
       [](const Shot&, unsigned, Bytes to) { store(to, std::uint8_t{0}); }},
      {attribute("riegl.rgba", uint8, {}, 4),
       [](const Shot& s, unsigned e, Bytes to) { store(to, colourOf(s, e)); }},
      {attribute("riegl.class", uint16),
       [](const Shot& s, unsigned e, Bytes to) {
         store(to, static_cast<std::uint16_t>(reflection(s, e).surface));
       }},
      {attribute("riegl.start_of_scan_line", uint8),
       [](const Shot& s, unsigned e, Bytes to) {
         store(to, static_cast<std::uint8_t>(s.lineStart && e == 0));
       }},
      {attribute("riegl.source_indicator", uint8),
       [](const Shot&, unsigned, Bytes to) { store(to, std::uint8_t{0}); }},
      {attribute("riegl.fwa", uint8),
       [](const Shot& s, unsigned, Bytes to) { store(to, static_cast<std::uint8_t>(s.echoes.count > 1)); }},
      {attribute("riegl.wfm_echo_time_offset", int32),
       [](const Shot& s, unsigned e, Bytes to) {
         // Ticks of 4 ps from the first echo of the shot: light travels there and back.
         const double metres = reflection(s, e).range - reflection(s, 0).range;
         store(to, static_cast<std::int32_t>(2 * metres / (groupVelocity * tickSeconds)));
       }},
      {attribute("riegl.waveform_available", uint8),
       [](const Shot&, unsigned, Bytes to) { store(to, std::uint8_t{1}); }},
      {attribute("riegl.wfm_sbl_id", uint64), [](const Shot& s, unsigned, Bytes to) { store(to, s.number); }},
      {scaled("riegl.scan_angle", int16, "deg", 0.002),
       [](const Shot& s, unsigned, Bytes to) {
         store(to, static_cast<std::int16_t>(s.mirrorTurns * 360 / 0.002 + (s.mirrorTurns < 0 ? -0.5 : 0.5)));
       }},
      {attribute("riegl.scan_direction", uint8),
       [](const Shot&, unsigned, Bytes to) { store(to, std::uint8_t{1}); }},
      {attribute("riegl.source_index", uint16),
       [](const Shot&, unsigned, Bytes to) { store(to, std::uint16_t{1}); }},
      {attribute("riegl.id", uint64),
       [](const Shot& s, unsigned e, Bytes to) { store(to, s.firstEcho + e + 1); }},
      {attribute("riegl.raw_range", float64, "m"),
       [](const Shot& s, unsigned e, Bytes to) { store(to, onMillimetreGrid(reflection(s, e).range)); },
       millimetres(scannerOffset, 1)},
      {attribute("riegl.scan_line_index", int32),
       [](const Shot& s, unsigned, Bytes to) { store(to, static_cast<std::int32_t>(s.line)); }},
  };
}

} // namespace

const std::vector<ScanColumn>& scanColumns() {
  static const std::vector<ScanColumn> columns = makeColumns();
  return columns;
}

} // namespace rdbtool
