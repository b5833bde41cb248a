// SPDX-License-Identifier: BSD-3-Clause
// The command line of rdbtool: its options, commands and error lines.
#include "apps/rdbtool/command_line.h"

#include "apps/common/option_checks.h"
#include "apps/common/printable_text.h"
#include "apps/common/program.h"
#include "apps/common/version_text.h"
#include "apps/rdbtool/damage_command.h"
#include "apps/rdbtool/import.h"
#include "apps/rdbtool/output_name.h"
#include "apps/rdbtool/recode.h"
#include "apps/rdbtool/report.h"
#include "apps/rdbtool/synth.h"
#include "apps/rdbtool/tool_error.h"
#include "container/format/error.h"

#include <CLI/CLI.hpp>
#include <array>
#include <functional>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace rdbtool {

namespace {

using container::BlockEncoding;

constexpr auto program = "rdbtool";
constexpr auto mostBlockRows = std::numeric_limits<std::uint32_t>::max();

/// The streams of a run and its exit status.
struct Session {
  std::ostream& out;
  std::ostream& err;
  ExitStatus status = ExitStatus::done;
};

template <typename Number>
CLI::Option* addNumber(CLI::App& command, const char* name, Number& number, const char* purpose) {
  return command.add_option(name, number, purpose)->check(CLI::Validator(apps::decimalProblem<Number>, ""));
}
template <typename Number>
CLI::Option* addNumber(CLI::App& command, const char* name, std::optional<Number>& number,
                       const char* purpose) {
  return command.add_option(name, number, purpose)->check(CLI::Validator(apps::decimalProblem<Number>, ""));
}

/// The names in comma-separated lists; empty names are skipped.
std::vector<std::string> namesIn(const std::vector<std::string>& texts) {
  std::vector<std::string> names;
  for (const std::string& text : texts) {
    std::istringstream rest(text);
    for (std::string name; std::getline(rest, name, ',');) {
      if (!name.empty()) {
        names.push_back(name);
      }
    }
  }
  return names;
}

std::string columnsProblem(const std::string& text) {
  return namesIn({text}).empty() ? "expected names of columns, found \"" + text + "\"" : "";
}

constexpr std::array<std::pair<const char*, BlockEncoding>, 3> encodings{
    {{"raw", BlockEncoding::raw}, {"lz4", BlockEncoding::lz4}, {"deflate", BlockEncoding::deflate}}};

BlockEncoding encodingNamed(const std::string& name) {
  for (const auto& [known, encoding] : encodings) {
    if (name == known) {
      return encoding;
    }
  }
  throw wrongUse("--encoding: expected raw, lz4 or deflate, found " + name);
}

std::string nameOf(BlockEncoding wanted) {
  for (const auto& [name, encoding] : encodings) {
    if (encoding == wanted) {
      return name;
    }
  }
  return {};
}

CLI::Option* addEncoding(CLI::App& command, BlockEncoding& encoding) {
  return command.add_option_function<std::string>(
      "--encoding", [&encoding](const std::string& name) { encoding = encodingNamed(name); },
      "encoding of the blocks: raw, lz4 (small, fast to load) or deflate (smaller, slower to load)");
}

template <typename Number>
CLI::Option* addBlockRows(CLI::App& command, Number& rows, const char* purpose) {
  return addNumber(command, "--block-rows", rows, purpose)
      ->check(CLI::Range(std::uint32_t{1}, mostBlockRows));
}

void addWriterOptions(CLI::App& command, WriterSettings& settings, std::string& output) {
  command.add_option("-o,--output", output, "database to make")->required();
  addBlockRows(command, settings.blockRows, "records per block")->capture_default_str();
  const CLI::Option* encoding =
      addEncoding(command, settings.encoding)->default_str(nameOf(settings.encoding));
  command.add_flag_callback(
      "--no-checksums", [&settings] { settings.checksums = false; },
      "write a file of version 1, with raw blocks without checksums");
  command.parse_complete_callback([&settings, encoding] {
    if (settings.checksums) {
      return;
    }
    if (encoding->count() > 0 && settings.encoding != BlockEncoding::raw) {
      throw wrongUse("--no-checksums: expected the encoding raw, the only one of version 1, found " +
                     nameOf(settings.encoding));
    }
    settings.version = 1;
    settings.encoding = BlockEncoding::raw;
  });
}

void addSynthOptions(CLI::App& command, SynthRequest& request) {
  addNumber(command, "--records", request.records, "records to make")->required();
  addNumber(command, "--seed", request.seed, "seed of the random numbers")->capture_default_str();
  command.add_option("--without", request.without, "metadata to omit: ITEM or ITEM:KEY, may be repeated")
      ->allow_extra_args(false);
  addWriterOptions(command, request.writer, request.output);
}

DatabaseContent contentOf(SynthKind kind) {
  return kind == SynthKind::trajectory ? DatabaseContent::trajectory
         : kind == SynthKind::shots    ? DatabaseContent::shots
                                       : DatabaseContent::points;
}

void addSynthKind(CLI::App& synth, Session& session, SynthKind kind, const char* name, const char* purpose) {
  const auto request = std::make_shared<SynthRequest>();
  request->kind = kind;
  CLI::App* command = synth.add_subcommand(name, purpose);
  addSynthOptions(*command, *request);
  if (kind == SynthKind::trajectory) {
    addNumber(*command, "--trajectory-rate", request->trajectoryRateHz, "records per second")
        ->capture_default_str();
    command->add_option("--lever-arm", request->leverArmFile, "lever-arm file to write beside the database")
        ->check(CLI::Validator(apps::pathProblem, ""));
  } else {
    command->add_option("--columns", request->columns, "columns to write, separated by commas (default: all)")
        ->check(CLI::Validator(columnsProblem, ""))
        ->allow_extra_args(false);
    addNumber(*command, "--pulse-rate", request->pulseRateHz, "shots per second")->capture_default_str();
  }
  command->callback([request, &session] {
    request->columns = namesIn(request->columns);
    synthesise(*request);
    noteOutputName(contentOf(request->kind), request->output, session.err);
  });
}

void addSynth(CLI::App& app, Session& session) {
  CLI::App* synth = app.add_subcommand("synth", "make a database of a synthetic survey");
  synth->require_subcommand(1);
  addSynthKind(*synth, session, SynthKind::scan, "scan", "points, one record per echo (.rdbx)");
  addSynthKind(*synth, session, SynthKind::shots, "shots", "laser pulses with waveform metadata (.sodx)");
  addSynthKind(*synth, session, SynthKind::trajectory, "trajectory", "the flight path (.pofx)");
}

ImportFormat formatNamed(const std::string& name) {
  if (name != "las" && name != "sbet") {
    throw wrongUse("--format: expected las or sbet, found " + name);
  }
  return name == "las" ? ImportFormat::las : ImportFormat::sbet;
}

void addImport(CLI::App& app, Session& session) {
  const auto request = std::make_shared<ImportRequest>();
  CLI::App* command = app.add_subcommand("import", "make a database from a LAS file or an SBET trajectory");
  command->add_option("input", request->input, "file to read")->required();
  command->add_option_function<std::string>(
      "--format", [request](const std::string& name) { request->format = formatNamed(name); },
      "las or sbet (default: detected from the file)");
  command->add_option_function<std::string>(
      "--date", [request](const std::string& day) { request->date = parseIsoDate(day); },
      "a day in the week of the survey, YYYY-MM-DD");
  addWriterOptions(*command, request->writer, request->output);
  command->callback([request, &session] { importFile(*request, session.err); });
}

void addRecode(CLI::App& app, Session& session) {
  const auto request = std::make_shared<RecodeRequest>();
  CLI::App* command = app.add_subcommand("recode", "copy a database with another encoding of its blocks");
  command->add_option("input", request->input, "database to read")->required();
  command->add_option("-o,--output", request->output, "database to make")->required();
  addEncoding(*command, request->encoding)->required();
  addBlockRows(*command, request->blockRows, "records per block (default: as in the input)");
  command->callback([request, &session] { recode(*request, session.err); });
}

void addUpgrade(CLI::App& app, Session& session) {
  const auto input = std::make_shared<std::string>();
  const auto output = std::make_shared<std::string>();
  CLI::App* command = app.add_subcommand(
      "upgrade", "rewrite a database of version 1 as version 2, whose catalogue is protected");
  command->add_option("input", *input, "database of version 1")->required();
  command->add_option("-o,--output", *output, "database to make (default: the input is replaced)")
      ->check(CLI::Validator(apps::pathProblem, ""));
  command->callback([input, output, &session] { upgrade(*input, *output, session.err); });
}

void addReports(CLI::App& app, Session& session) {
  const auto path = std::make_shared<std::string>();
  const auto json = std::make_shared<bool>(false);
  CLI::App* info = app.add_subcommand("info", "describe the content of a database");
  info->add_option("file", *path, "database")->required();
  info->add_flag("--json", *json, "print one JSON object");
  info->callback([path, json, &session] { describe(*path, *json, session.out); });
  CLI::App* verify = app.add_subcommand("verify", "check every block of a database");
  verify->add_option("file", *path, "database")->required();
  verify->callback([path, &session] {
    session.status = verifyDatabase(*path, session.out) ? ExitStatus::done : ExitStatus::failed;
  });
}

void addDamage(CLI::App& app) {
  const auto request = std::make_shared<container::DamageRequest>();
  CLI::App* command = app.add_subcommand("damage", "damage a database in place, for tests");
  command->add_option("file", request->file, "database")->required();
  command->add_option("--attribute", request->attribute, "attribute whose block or type is damaged");
  addNumber(*command, "--block", request->block, "number of the block, from 0")->capture_default_str();
  addNumber(*command, "--flip-byte", request->flipByte, "flip the bits of this byte of the block");
  addNumber(*command, "--shorten-block", request->shortenBytes,
            "remove this many bytes from the end of the block");
  command->add_flag("--clear-checksum", request->clearChecksum, "remove the checksum of the block");
  command->add_flag("--drop-block", request->dropBlock, "remove the block");
  command->add_option("--set-type", request->storedType, "replace the type name of the attribute");
  addNumber(*command, "--set-records", request->records, "replace the number of records");
  addNumber(*command, "--set-block-rows", request->blockRows, "records per block");
  addNumber(*command, "--set-application-id", request->applicationId,
            "replace the application id of the file");
  addNumber(*command, "--set-version", request->version, "replace the version of the format");
  command->add_option("--drop-table", request->dropTable,
                      "remove a table: database, attribute, block or metadata");
  addNumber(*command, "--flip-file-byte", request->flipFileByte, "flip the bits of this byte of the file");
  addNumber(*command, "--truncate", request->truncateBytes, "keep only this many bytes of the file");
  command->callback([request] { damageDatabase(*request); });
}

int statusNumber(ExitStatus status) {
  return static_cast<int>(status);
}

void printError(std::ostream& err, const std::string& text) {
  apps::printLine(err, std::string(program) + ": " + text);
}

/// Prints the failure under way and returns its status; rethrows one that has no status of its own.
int answerFailure(std::ostream& err) {
  try {
    throw;
  } catch (const ToolError& error) {
    printError(err, error.what());
    return statusNumber(error.status());
  } catch (const container::Error& error) {
    printError(err, std::string(error.what()) + ": " + error.details());
    const bool cannotOpen = error.kind() == container::ErrorKind::cannotOpen;
    return statusNumber(cannotOpen ? ExitStatus::unreadable : ExitStatus::failed);
  }
}

/// Runs the command that the arguments name. \return the exit status
int answer(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err) {
  Session session{out, err};
  CLI::App app("Makes, imports, recodes, describes, verifies and damages databases.", program);
  app.set_version_flag("--version", apps::versionText(program))->description("print the version and exit");
  app.require_subcommand(1);
  addSynth(app, session);
  addImport(app, session);
  addRecode(app, session);
  addUpgrade(app, session);
  addReports(app, session);
  addDamage(app);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      return app.exit(error, out, err); // help or the version was asked for
    }
    const bool missing = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError);
    printError(err, error.what() + std::string(missing ? "; see --help" : ""));
    return statusNumber(ExitStatus::wrongUse);
  } catch (const std::exception&) {
    return answerFailure(err);
  }
  return statusNumber(session.status);
}

} // namespace

int runTool(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err) {
  const int status =
      apps::runGuarded(program, err, [&] { return answer(argumentCount, arguments, out, err); });
  const bool written = apps::flushOutput(program, out, err);
  return written || status != statusNumber(ExitStatus::done) ? status : statusNumber(ExitStatus::failed);
}

} // namespace rdbtool
