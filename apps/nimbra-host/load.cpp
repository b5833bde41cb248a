// SPDX-License-Identifier: BSD-3-Clause
// Calls the loads, the rebasing of time and the waveform metadata.
#include "apps/nimbra-host/load.h"

#include <rdb2nimbra/rdb2nimbra.h>

#include "apps/common/database_content.h"
#include "apps/nimbra-host/kept_variable.h"
#include "model/torvel/core/speak_ptr.h"
#include "model/torvel/core/typename.h"
#include "platform/client/rdb.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <cxxabi.h>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbrahost {

namespace {

using ColumnCallback = std::function<void(const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>&,
                                          const std::string&, const bool&)>;
using Progress = Torvel::StrongPtr<Torvel::LoaderProgress, Torvel::InterfaceBase>;

/// Captures the lines of the console while an object lives.
class ConsoleCapture {
 public:
  explicit ConsoleCapture(std::vector<std::string>& lines)
      : before(Torvel::setLineSink([&lines](const std::string& line) { lines.push_back(line); })) {}
  ConsoleCapture(const ConsoleCapture&) = delete;
  ConsoleCapture& operator=(const ConsoleCapture&) = delete;
  ~ConsoleCapture() { Torvel::setLineSink(before); }

 private:
  Torvel::LineSink before;
};

/// The exception being handled.
Raised describeRaised() {
  try {
    throw;
  } catch (const std::exception& error) {
    return {Torvel::Typename(typeid(error)), error.what()};
  } catch (...) {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    return {type != nullptr ? Torvel::Typename(*type) : "unknown", ""};
  }
}

/// The exception under way as one text.
std::string textOfRaised() {
  try {
    throw;
  } catch (const riegl::rdb::Error& error) {
    return std::string(error.what()) + " (" + error.details() + ")";
  } catch (...) {
    const Raised raised = describeRaised();
    return raised.type + ": " + raised.what;
  }
}

/// Runs `work` and records its result or its exception.
template <class Work>
void keepResult(LoadOutcome& outcome, Work&& work) {
  try {
    outcome.result = work();
  } catch (...) {
    outcome.exception = describeRaised();
  }
}

/// The callback that rebases the time column. It writes its failures to `error`, which must outlive it.
ColumnCallback makeRebasing(const std::string& file, std::string& error) {
  try {
    riegl::rdb::Pointcloud database{riegl::rdb::Context("", "")};
    database.open(file, riegl::rdb::pointcloud::OpenSettings());
    const int weekDay = Riegl::getIsUTCandWeekday(database.metaData()).weekDay;
    return [&error, weekDay](const auto& chunk, const std::string& fieldName, const bool& isUTC) {
      Riegl::modifyGPSTime(error, weekDay, chunk, fieldName, isUTC);
    };
  } catch (...) {
    error = textOfRaised();
    return {};
  }
}

void loadTrajectory(const LoadRequest& request, LoadOutcome& outcome) {
  // The load sets the variable to this program's folder, where other users of PROJ in the process find no data.
  const KeptVariable projectionData("PROJ_LIB");
  ColumnCallback callback;
  std::string rebaseError;
  if (request.rebaseTime) {
    callback = makeRebasing(request.file, rebaseError);
  }
  const auto start = std::chrono::steady_clock::now();
  keepResult(outcome, [&] {
    return Riegl::pofx2nimbra(request.file, *outcome.grid, request.epsgCode, callback, request.leverArmFile,
                              Progress());
  });
  outcome.loadSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (request.rebaseTime) {
    outcome.rebaseError = rebaseError;
  }
}

void loadPointCloud(const LoadRequest& request, LoadOutcome& outcome) {
  const auto start = std::chrono::steady_clock::now();
  keepResult(outcome, [&] {
    return Riegl::rdbx2Z4(request.file, *outcome.grid, 0, request.loadAllAttributes, Progress());
  });
  outcome.loadSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

WaveformOutcome readWaveform(const std::string& file) {
  WaveformOutcome waveform;
  waveform.waveformGrid = new Nimbra::Grid;
  waveform.pointGrid = new Nimbra::Grid;
  waveform.waveformField = new Nimbra::Field(nullptr);
  waveform.tRefField = new Nimbra::Field(nullptr);
  try {
    riegl::rdb::Pointcloud database{riegl::rdb::Context("", "")};
    database.open(file, riegl::rdb::pointcloud::OpenSettings());
    Riegl::AttributesForFWFProcessing attributes;
    waveform.result = attributes.getAttributesViaJson(database);
    waveform.speak = attributes.speak();
    if (waveform.result.empty()) {
      waveform.error = attributes.addAttributeToZ4File(waveform.waveformGrid, waveform.pointGrid,
                                                       waveform.waveformField, waveform.tRefField, 0);
    }
  } catch (...) {
    waveform.error = textOfRaised();
  }
  return waveform;
}

} // namespace

bool isTrajectory(const std::string& file) {
  return apps::contentByName(file) == apps::DatabaseContent::trajectory;
}

bool isShots(const std::string& file) {
  return apps::contentByName(file) == apps::DatabaseContent::shots;
}

LoadOutcome runLoad(const LoadRequest& request) {
  LoadOutcome outcome;
  outcome.grid = new Nimbra::Grid;
  const ConsoleCapture capture(outcome.console);
  if (isTrajectory(request.file)) {
    loadTrajectory(request, outcome);
  } else {
    loadPointCloud(request, outcome);
  }
  if (request.waveform) {
    outcome.waveform = readWaveform(request.file);
  }
  return outcome;
}

std::string whyUnreadable(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) {
    return std::strerror(errno);
  }
  if (S_ISDIR(status.st_mode)) {
    return std::strerror(EISDIR);
  }
  // Opening a pipe without a writer must not block.
  const int descriptor = open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    return std::strerror(errno);
  }
  close(descriptor);
  return {};
}

} // namespace nimbrahost
