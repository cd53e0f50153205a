// The command line taken apart, and the command it names run.
// SPDX-License-Identifier: MIT
#include "cli/program.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include "cli/archive/archive_command.h"
#include "cli/archive/baseline_command.h"
#include "cli/archive/trend_command.h"
#include "cli/bands_command.h"
#include "cli/capture_command.h"
#include "cli/monitor/monitor_command.h"
#include "cli/registers_command.h"
#include "cli/report/report_command.h"
#include "cli/setup/setup_command.h"
#include "cli/small_commands.h"
#include "cli/wide/wide_command.h"
#include "numeric/conversions.h"
#include "simulator/signal/scenario.h"
#include "transport/typed_word.h"

namespace kestrel {
namespace {

constexpr const char* kDescription =
    "Operates one Kestrel tri-axial vibration sensor from the command line.";
constexpr const char* kFooter =
    "Ctrl-C ends a capture as the Stop button does.\n"
    "Exit codes: 0 success, 1 failure, 2 wrong usage, 3 no sensor,\n"
    "4 a capture that was stopped before it brought new data,\n"
    "5 a sensor that holds another set-up than asked for, 130 ended by Ctrl-C.";

// A parallel port's base address: any 16-bit word in hexadecimal digits, perhaps after "0x".
std::int16_t ParsePortAddress(const std::string& text) {
  const TypedWord address = ReadTypedWord(text);
  if (!address.fault.empty()) {
    throw CLI::ValidationError("--parallel", "\"" + text + "\" is not a port address like 378");
  }
  return NarrowToInteger(address.value);
}

int ParseAdapter(const std::string& text) {
  const std::string digits = text.starts_with("Ezusb-") ? text.substr(6) : text;
  if (digits.size() != 1 || digits[0] < '0' || digits[0] > '3') {
    throw CLI::ValidationError("--adapter", "\"" + text + "\" is not one of Ezusb-0 to Ezusb-3");
  }
  return digits[0] - '0';
}

void AddConnection(CLI::App& app, Connection& connection) {
  auto* simulate =
      app.add_flag("--simulate", connection.simulate, "Use a simulated sensor; no hardware needed");
  auto* adapter = app.add_option_function<std::string>(
      "--adapter", [&](const std::string& text) { connection.adapter = ParseAdapter(text); },
      "Use this USB adapter, Ezusb-0 to Ezusb-3");
  auto* parallel = app.add_option_function<std::string>(
      "--parallel",
      [&](const std::string& text) { connection.parallelAddress = ParsePortAddress(text); },
      "Use the parallel port at this hexadecimal address, for example 378");
  auto* device =
      app.add_option("--port-device", connection.portDevice,
                     "Use this parallel port, for example /dev/parport1, whatever its address");
  app.add_option("--scenario", connection.scenario, "What the simulated sensor measures")
      ->needs(simulate)
      ->check(CLI::IsMember(ScenarioNames()));
  parallel->excludes(adapter);
  device->excludes(adapter)->excludes(simulate);
}

// What "--archive" and "--no-archive" say.
struct ArchiveOptions {
  std::string place;
  bool none = false;

  void AddTo(CLI::App& app) {
    auto* named = app.add_option("--archive", place,
                                 "Keep records in this file, or on this server (postgresql://...)");
    app.add_flag("--no-archive", none, "Keep no record")->excludes(named);
  }
  [[nodiscard]] KeepingChoice Choice(const archive::Place& usual) const {
    if (none) return {};
    return place.empty() ? KeepingChoice{usual, false} : KeepingChoice{{place}, true};
  }
};

// The way out for those who have no hardware is said as well.
ExitCode FailedToConnect(Session& session, const Failure& failure) {
  const ExitCode end = session.Fail(failure);
  if (end == ExitCode::NoSensor && !session.station.Road().simulated) {
    session.Say("Without hardware, --simulate uses the simulated sensor.");
  }
  return end;
}

ExitCode RunCommand(Command& command, Session& session, const Output& output) {
  try {
    if (command.NeedsSensor()) {
      const auto connected = session.station.Connect();
      if (!connected) return FailedToConnect(session, connected.Why());
      session.SayNotes();
    }
    const ExitCode end = command.Run(session, output);
    session.SayNotes();
    const bool isKept = session.EndKeeping();
    return isKept || end != ExitCode::Success ? end : ExitCode::Failure;
  } catch (const std::runtime_error& error) {  // the system's own errors of files among them
    session.Say(error.what());
    return ExitCode::Failure;
  }
}

ExitCode Handed(const Surroundings& surroundings) {
  try {
    return surroundings.doneByPainter();
  } catch (const std::runtime_error& error) {
    surroundings.error << error.what() << '\n';
    return ExitCode::Failure;
  }
}

std::optional<ExitCode> RanAlone(Command& command, const Surroundings& surroundings,
                                 const Connection& connection, const KeepingChoice& archive,
                                 const Output& output) {
  try {
    return command.RunAlone(surroundings, connection, archive, output);
  } catch (const std::runtime_error& error) {
    surroundings.error << error.what() << '\n';
    return ExitCode::Failure;
  }
}

// The words that could stand where one is missing, with commas.
std::string WordsOf(const CLI::App& app) {
  std::string words;
  for (const CLI::App* word : app.get_subcommands([](const CLI::App*) { return true; })) {
    words += (words.empty() ? "" : ", ") + word->get_name();
  }
  return words;
}

// Names the commands where one is wanted and missing, or is none of them; any other fault in the
// parser's own words.
ExitCode Refuse(const CLI::App& app, const CLI::ParseError& error,
                const Surroundings& surroundings) {
  const auto chosen = app.get_subcommands();
  const CLI::App& last = chosen.empty() ? app : *chosen.back();
  std::vector<std::string> rest = app.remaining(true);
  std::erase_if(rest, [](const std::string& word) { return word.starts_with("-"); });
  if (error.get_name() != "RequiredError" || WordsOf(last).empty()) {
    const int code = app.exit(error, surroundings.out, surroundings.error);
    return code == 0 ? ExitCode::Success : ExitCode::Usage;
  }
  const std::string before = chosen.empty() ? "" : last.get_name() + ": ";
  const std::string what = !rest.empty()    ? "\"" + rest.front() + "\" is not a command"
                           : chosen.empty() ? "A command is missing"
                                            : "a command is missing";
  surroundings.error << before << what << "; the commands are " << WordsOf(last)
                     << ".\nRun with --help for more information.\n";
  return ExitCode::Usage;
}

}  // namespace

ExitCode RunProgram(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
  CLI::App app(kDescription, "kestrel-cli");
  Connection connection;
  Output output{surroundings.out};
  app.set_version_flag("--version", KESTREL_VERSION);
  app.add_flag("--json", output.json, "Write results as JSON");
  AddConnection(app, connection);
  ArchiveOptions archiveOptions;
  archiveOptions.AddTo(app);
  app.require_subcommand(1);
  app.fallthrough();
  app.footer(kFooter);
  std::array<std::unique_ptr<Command>, 14> commands{
      std::make_unique<CaptureCommand>(),  std::make_unique<RegistersCommand>(),
      std::make_unique<BandsCommand>(),    std::make_unique<GlobalCommand>(),
      std::make_unique<RecordCommand>(),   std::make_unique<StatusCommand>(),
      std::make_unique<AdaptersCommand>(), std::make_unique<ArchiveCommand>(),
      std::make_unique<TrendCommand>(),    std::make_unique<BaselineCommand>(),
      std::make_unique<SetupCommand>(),    std::make_unique<ReportCommand>(),
      std::make_unique<MonitorCommand>(),  std::make_unique<WideCommand>()};
  for (const auto& command : commands) command->AddTo(app);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    return Refuse(app, error, surroundings);
  }
  const auto chosen = std::find_if(commands.begin(), commands.end(),
                                   [](const auto& command) { return command->Chosen(); });
  if ((*chosen)->NeedsPainter() && surroundings.painter == nullptr) return Handed(surroundings);
  const KeepingChoice archive = archiveOptions.Choice(surroundings.usualArchive);
  if (const auto end = RanAlone(**chosen, surroundings, connection, archive, output)) return *end;
  Session session(surroundings, connection, archive);
  return RunCommand(**chosen, session, output);
}

}  // namespace kestrel
