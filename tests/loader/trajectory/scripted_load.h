// SPDX-License-Identifier: BSD-3-Clause
// Fixture: a trajectory load over the scripted client.
#pragma once

#include <rdb2nimbra/rdb2nimbra.h>

#include "model/torvel/objects/environment.h"
#include "tests/scripted/recorded_platform.h"
#include "tests/scripted/script.h"
#include "tests/support/console_lines.h"
#include "tests/support/grid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace flight {

using Calls = std::vector<std::string>;
using Point = Quillon::PhysicalSpace::point;

inline const Calls columnNames{"riegl.pof_timestamp", "riegl.pof_roll",        "riegl.pof_pitch",
                               "riegl.pof_yaw",       "riegl.pof_path_length", "riegl.pof_latitude",
                               "riegl.pof_longitude", "riegl.pof_height"};

class ScriptedLoad : public testing::Test {
 protected:
  ScriptedLoad() : script(scripted::newScript()) {
    recorded::transformation() = {};
    for (const std::string& name : columnNames) {
      script.columns[name] = nullptr;
    }
  }

  std::string load() {
    script.calls.clear();
    return Riegl::pofx2nimbra(path, grid, 32633, callback, leverArm, nullptr);
  }

  static void append(Calls& calls, const Calls& more) { calls.insert(calls.end(), more.begin(), more.end()); }

  scripted::Script& script;
  support::ConsoleLines console;
  Nimbra::Grid grid;
  std::string path = "/data/flight.pofx";
  std::string leverArm;
  Riegl::ChunkCallback callback = [this](const auto&, const std::string& name, const bool&) {
    script.calls.push_back("callback(" + name + ")");
  };
};

} // namespace flight
