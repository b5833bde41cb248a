// SPDX-License-Identifier: BSD-3-Clause
// The command line of nimbra-host.
#include "apps/nimbra-host/command_line.h"

#include "apps/common/interruption.h"
#include "apps/common/option_checks.h"
#include "apps/common/output_file.h"
#include "apps/common/printable_text.h"
#include "apps/common/program.h"
#include "apps/common/target_path.h"
#include "apps/common/version_text.h"
#include "apps/nimbra-host/json_report.h"
#include "apps/nimbra-host/load.h"
#include "apps/nimbra-host/people_report.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace nimbrahost {

namespace {

enum Status : int { loaded = 0, failed = 1, wrongUse = 2, unreadable = 3 };

constexpr auto program = "nimbra-host";

/// The options of a load.
struct Wishes {
  LoadRequest load;
  std::optional<int> epsgCode;
  std::string values = "0";
  bool json = false;
  PictureRequest picture;
  std::string size;
};

std::optional<ShownValues> shownValues(const std::string& text) {
  if (text == "all") {
    return ShownValues{ShownValues::all};
  }
  const auto most = apps::wholeNumber<std::uint64_t>(text);
  return most ? std::optional(ShownValues{*most}) : std::nullopt;
}

/// Reads WIDTHxHEIGHT into a request. \return whether both are within 1 to the largest side
bool takeSize(const std::string& text, PictureRequest& picture) {
  const std::size_t cross = std::min(text.find('x'), text.size());
  const auto width = apps::wholeNumber<int>(std::string_view(text).substr(0, cross));
  const auto height = apps::wholeNumber<int>(std::string_view(text).substr(std::min(cross + 1, text.size())));
  const auto fits = [](const auto& side) { return side && *side >= 1 && *side <= largestSide; };
  if (!fits(width) || !fits(height)) {
    return false;
  }
  picture.width = *width;
  picture.height = *height;
  return true;
}

std::string valuesProblem(const std::string& text) {
  return shownValues(text) ? "" : "expected a number of elements or all, found " + text;
}

std::string sizeProblem(const std::string& text) {
  PictureRequest picture;
  return takeSize(text, picture) ? ""
                                 : "expected WIDTHxHEIGHT with sides from 1 to " +
                                       std::to_string(largestSide) + ", found " + text;
}

void addLoad(CLI::App& app, Wishes& wishes) {
  CLI::App* load = app.add_subcommand("load", "load a database and show the content of the grid");
  load->add_option("FILE", wishes.load.file,
                   "database: a trajectory (.pofx) or a point cloud (any other extension)")
      ->required();
  load->add_flag("--all-attributes", wishes.load.loadAllAttributes, "load the optional columns too");
  load->add_option("--epsg", wishes.epsgCode, "EPSG code of the coordinate system to project a trajectory to")
      ->check(CLI::Validator(apps::decimalProblem<int>, ""));
  load->add_option("--lever-arm", wishes.load.leverArmFile,
                   "lever-arm and misalignment file of a trajectory");
  load->add_flag("--rebase-time", wishes.load.rebaseTime,
                 "move a trajectory's time stamps onto the seconds of the week");
  load->add_flag("--waveform", wishes.load.waveform, "show the metadata for waveform processing");
  load->add_flag("--json", wishes.json, "print one JSON object");
  load->add_option("--values", wishes.values, "elements to show per fragment: a number or all")
      ->check(CLI::Validator(valuesProblem, "N|all"));
  load->add_option("--picture", wishes.picture.file, "PNG file to write: a top view of the points")
      ->check(CLI::Validator(apps::pathProblem, ""));
  load->add_option("--size", wishes.size, "size of the picture in pixels (default 1024x768)")
      ->check(CLI::Validator(sizeProblem, "WxH"));
}

void printError(std::ostream& err, const std::string& text) {
  apps::printLine(err, std::string(program) + ": " + text);
}

void note(std::ostream& err, const std::string& option, const std::string& kind) {
  printError(err, "note: " + option + " has no effect on a " + kind);
}

/// Prints a note for each option that has no effect on this kind of file.
void noteUnusedOptions(const Wishes& wishes, std::ostream& err) {
  if (!wishes.size.empty() && wishes.picture.file.empty()) {
    printError(err, "note: --size has no effect without --picture");
  }
  if (isTrajectory(wishes.load.file)) {
    if (wishes.load.loadAllAttributes) {
      note(err, "--all-attributes", "trajectory");
    }
    return;
  }
  if (wishes.epsgCode) {
    note(err, "--epsg", "point cloud");
  }
  if (!wishes.load.leverArmFile.empty()) {
    note(err, "--lever-arm", "point cloud");
  }
  if (wishes.load.rebaseTime) {
    note(err, "--rebase-time", "point cloud, whose load rebases its time stamps itself");
  }
}

PictureSubject subjectOf(const std::string& file) {
  return isTrajectory(file) ? PictureSubject::path
         : isShots(file)    ? PictureSubject::shots
                            : PictureSubject::cloud;
}

/// Why the picture cannot be written to its path, as far as that is known before the load; empty if nothing is.
std::string whyNoPicture(const Wishes& wishes) {
  const std::string& picture = wishes.picture.file;
  if (picture.empty()) {
    return {};
  }
  for (const std::string& input : {wishes.load.file, wishes.load.leverArmFile}) {
    if (!input.empty() && apps::sameFile(picture, input)) {
      return "--picture: expected a file other than " + input + ", found the same file";
    }
  }
  try {
    apps::requireReplaceable(picture);
  } catch (const apps::OutputError& error) {
    return std::string("--picture: ") + error.what();
  }
  return {};
}

/// Loads, draws and reports.
Status loadAndShow(const Wishes& wishes, std::ostream& out, std::ostream& err) {
  const LoadOutcome outcome = runLoad(wishes.load);
  std::optional<PictureOutcome> picture;
  if (!wishes.picture.file.empty()) {
    PictureRequest request = wishes.picture;
    request.subject = subjectOf(wishes.load.file);
    picture = drawPicture(*outcome.grid, request);
    if (apps::interrupted()) {
      printError(err, "interrupted before the picture was written");
      return failed;
    }
  }
  const ShownValues shown = *shownValues(wishes.values);
  const PictureOutcome* const drawn = picture ? &*picture : nullptr;
  OutputBuffer output(out);
  wishes.json ? writeJsonReport(output, wishes.load, outcome, shown, drawn)
              : writePeopleReport(output, wishes.load, outcome, shown, drawn);
  const bool written = apps::flushOutput(program, out, err);
  if (!wishes.json) {
    reportFailures(wishes.load, outcome, drawn, err);
  }
  const bool done = outcome.succeeded() && written && (!picture || picture->error.empty());
  return done ? loaded : failed;
}

Status run(Wishes& wishes, std::ostream& out, std::ostream& err) {
  if (isTrajectory(wishes.load.file) && !wishes.epsgCode) {
    printError(err, wishes.load.file + ": a trajectory needs --epsg N, the code of the system that its "
                                       "positions are projected to");
    return wrongUse;
  }
  const std::string obstacle = whyUnreadable(wishes.load.file);
  if (!obstacle.empty()) {
    printError(err, "cannot read " + wishes.load.file + ": " + obstacle);
    return unreadable;
  }
  const std::string clash = whyNoPicture(wishes);
  if (!clash.empty()) {
    printError(err, clash);
    return wrongUse;
  }
  noteUnusedOptions(wishes, err);
  wishes.load.epsgCode = wishes.epsgCode.value_or(0);
  if (!wishes.size.empty()) {
    takeSize(wishes.size, wishes.picture);
  }
  return loadAndShow(wishes, out, err);
}

/// Runs the command that the arguments name.
Status answer(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err) {
  CLI::App app("Loads a laser-scanner database and shows the content of the grid.", program);
  Wishes wishes;
  addLoad(app, wishes);
  app.set_version_flag("--version", apps::versionText(program))->description("print the version and exit");
  app.require_subcommand(1);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::Success& request) {
    app.exit(request, out, err); // help or the version was asked for
    return apps::flushOutput(program, out, err) ? loaded : failed;
  } catch (const CLI::ParseError& mistake) {
    printError(err, mistake.what());
    err << "Try: nimbra-host load --help\n";
    return wrongUse;
  }
  return run(wishes, out, err);
}

} // namespace

int runHost(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err) {
  return apps::runGuarded(program, err, [&] { return answer(argumentCount, arguments, out, err); });
}

} // namespace nimbrahost
