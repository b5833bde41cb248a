// SPDX-License-Identifier: BSD-3-Clause
// The command line of nimbra-host.
#include "apps/nimbra-host/command_line.h"

#include <rdb2nimbra/version.h>

#include "apps/nimbra-host/json_report.h"
#include "apps/nimbra-host/load.h"
#include "apps/nimbra-host/people_report.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>
#include <iostream>

namespace nimbrahost {

namespace {

enum Status : int { loaded = 0, failed = 1, wrongUse = 2, unreadable = 3 };

constexpr auto lostOutput = "nimbra-host: the report could not be written to standard output\n";

/// Everything that was typed.
struct Wishes {
  LoadRequest load;
  std::optional<int> epsgCode;
  std::string values = "0";
  bool json = false;
  PictureRequest picture;
  std::string size;
};

/// A whole text as a number; nothing where it is none, or has anything else beside it.
template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
  Number number{};
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
  return problem == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<ShownValues> shownValues(const std::string& text) {
  if (text == "all") {
    return ShownValues{ShownValues::all};
  }
  const auto most = wholeNumber<std::uint64_t>(text);
  return most ? std::optional(ShownValues{*most}) : std::nullopt;
}

/// Reads WIDTHxHEIGHT into a request. \returns whether both are within 1 to the largest side
bool takeSize(const std::string& text, PictureRequest& picture) {
  const std::size_t cross = std::min(text.find('x'), text.size());
  const auto width = wholeNumber<int>(std::string_view(text).substr(0, cross));
  const auto height = wholeNumber<int>(std::string_view(text).substr(std::min(cross + 1, text.size())));
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

/// Refuses what the parser would take in its own way: a leading zero means octal.
std::string codeProblem(const std::string& text) {
  const auto code = wholeNumber<int>(text);
  return code && std::to_string(*code) == text ? "" : "expected a whole number, found " + text;
}

std::string pictureProblem(const std::string& text) {
  return text.empty() ? "expected the path of a file, found an empty text" : "";
}

std::string sizeProblem(const std::string& text) {
  PictureRequest picture;
  return takeSize(text, picture) ? ""
                                 : "expected WIDTHxHEIGHT with sides from 1 to " +
                                       std::to_string(largestSide) + ", found " + text;
}

void addLoad(CLI::App& app, Wishes& wishes) {
  CLI::App* load = app.add_subcommand("load", "load a database and show what stands on the grid");
  load->add_option("FILE", wishes.load.file, "database; .pofx is a trajectory, all else a point cloud")
      ->required();
  load->add_flag("--all-attributes", wishes.load.loadAllAttributes, "load the optional columns too");
  load->add_option("--epsg", wishes.epsgCode, "EPSG code of the system that a trajectory is projected to")
      ->check(CLI::Validator(codeProblem, ""));
  load->add_option("--lever-arm", wishes.load.leverArmFile,
                   "lever-arm and misalignment file of a trajectory");
  load->add_flag("--rebase-time", wishes.load.rebaseTime,
                 "move a trajectory's time stamps onto the seconds of the week");
  load->add_flag("--waveform", wishes.load.waveform, "show the metadata for waveform processing");
  load->add_flag("--json", wishes.json, "one JSON object on standard output");
  load->add_option("--values", wishes.values, "how many elements of each column to show: a number or all")
      ->check(CLI::Validator(valuesProblem, "N|all"));
  load->add_option("--picture", wishes.picture.file, "PNG file to write: a top view of the points")
      ->check(CLI::Validator(pictureProblem, ""));
  load->add_option("--size", wishes.size, "size of the picture in pixels (default 1024x768)")
      ->check(CLI::Validator(sizeProblem, "WxH"));
}

void note(std::ostream& err, const char* option, const char* kind) {
  err << "nimbra-host: note: " << option << " has no effect on a " << kind << "\n";
}

/// Says which options a file of this kind leaves unused.
void noteUnusedOptions(const Wishes& wishes, std::ostream& err) {
  if (!wishes.size.empty() && wishes.picture.file.empty()) {
    err << "nimbra-host: note: --size has no effect without --picture\n";
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

/// Why the picture can't go where it is wanted: it would take the place of what is loaded. Empty if it can.
std::string whyNoPicture(const Wishes& wishes) {
  const std::string& picture = wishes.picture.file;
  for (const std::string& input : {wishes.load.file, wishes.load.leverArmFile}) {
    std::error_code absent;
    if (!picture.empty() && !input.empty() && std::filesystem::equivalent(picture, input, absent)) {
      return "--picture: expected a file other than " + input + ", found the same file";
    }
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
  }
  const ShownValues shown = *shownValues(wishes.values);
  const PictureOutcome* const drawn = picture ? &*picture : nullptr;
  OutputBuffer output(out);
  const bool written = wishes.json ? writeJsonReport(output, wishes.load, outcome, shown, drawn)
                                   : writePeopleReport(output, wishes.load, outcome, shown, drawn);
  if (!written) {
    err << lostOutput;
  }
  if (!wishes.json) {
    reportFailures(wishes.load, outcome, drawn, err);
  }
  const bool done = outcome.succeeded() && written && (!picture || picture->error.empty());
  return done ? loaded : failed;
}

Status run(Wishes& wishes, std::ostream& out, std::ostream& err) {
  if (isTrajectory(wishes.load.file) && !wishes.epsgCode) {
    err << "nimbra-host: " << wishes.load.file
        << ": a trajectory needs --epsg N, the code of the system that its positions are projected to\n";
    return wrongUse;
  }
  const std::string obstacle = whyUnreadable(wishes.load.file);
  if (!obstacle.empty()) {
    err << "nimbra-host: cannot read " << wishes.load.file << ": " << obstacle << "\n";
    return unreadable;
  }
  const std::string clash = whyNoPicture(wishes);
  if (!clash.empty()) {
    err << "nimbra-host: " << clash << "\n";
    return wrongUse;
  }
  noteUnusedOptions(wishes, err);
  wishes.load.epsgCode = wishes.epsgCode.value_or(0);
  if (!wishes.size.empty()) {
    takeSize(wishes.size, wishes.picture);
  }
  return loadAndShow(wishes, out, err);
}

} // namespace

int runHost(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err) {
  CLI::App app("Loads a laser-scanner database and shows what stands on the grid.", "nimbra-host");
  Wishes wishes;
  addLoad(app, wishes);
  app.set_version_flag("--version", "nimbra-host " RDB2NIMBRA_VERSION)
      ->description("print the version and exit");
  app.require_subcommand(1);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::Success& answer) {
    app.exit(answer, out, err); // help or the version was asked for
    if (out.flush()) {
      return loaded;
    }
    err << lostOutput;
    return failed;
  } catch (const CLI::ParseError& mistake) {
    err << "nimbra-host: " << mistake.what() << "\nTry: nimbra-host load --help\n";
    return wrongUse;
  }
  try {
    return run(wishes, out, err);
  } catch (const std::exception& error) {
    err << "nimbra-host: " << error.what() << "\n";
    return failed;
  }
}

} // namespace nimbrahost
