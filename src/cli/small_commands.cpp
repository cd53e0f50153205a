// Functions, state and adapters, reported.
// SPDX-License-Identifier: MIT
#include "cli/small_commands.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "cli/record_report.h"
#include "device/global_commands.h"
#include "numeric/number_format.h"

namespace kestrel {
namespace {

std::string FunctionList() {
  std::string list = "Functions:";
  for (const char* item : kCommandItems) list += std::string("\n  ") + item;
  return list;
}

}  // namespace

void GlobalCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("command", "Start one of the sensor's functions");
  word_->add_option("function", bit_, "Number of the function, 0 to 15")
      ->required()
      ->check(CLI::Range(0, 15));
  word_->footer(FunctionList());
}

ExitCode GlobalCommand::Run(Session& session, const Output& output) {
  const auto sent = session.station.SendFunction(bit_);
  if (!sent) return session.Fail(sent.Why());
  if (output.json) output.Write({{"sent", bit_}});
  return ExitCode::Success;
}

void StatusCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("status", "Report status flags, alarms, supply and temperature");
  word_->add_flag("--clear", clear_, "Clear the flags first");
}

ExitCode StatusCommand::Run(Session& session, const Output& output) {
  const auto state = clear_ ? session.station.ClearState() : session.station.ReadState();
  if (!state) return session.Fail(state.Why());
  if (output.json) {
    output.Write({{"status", StatusJson(state->status)},
                  {"supply_v", static_cast<double>(state->conditions.supplyV)},
                  {"temperature_c", static_cast<double>(state->conditions.temperatureC)}});
    return ExitCode::Success;
  }
  PrintState(output.out, state->status, state->alarms);
  output.out << ConditionsText(state->conditions);
  return ExitCode::Success;
}

void AdaptersCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("adapters", "List the USB adapters that are attached");
}

ExitCode AdaptersCommand::Run(Session& session, const Output& output) {
  Json all = Json::array();
  for (const AdapterRecord& board : session.station.Adapters()) {
    const std::string firmware = FixedNumber(static_cast<double>(board.firmwareVersion), 1);
    all.push_back({{"name", board.deviceName},
                   {"type", board.boardType},
                   {"string1", board.string1},
                   {"string2", board.string2},
                   {"firmware", firmware},
                   {"usb", board.usbVersion}});
    if (!output.json) {
      output.out << board.deviceName << "  " << board.boardType << "  " << board.string1 << ", "
                 << board.string2 << ", firmware " << firmware << ", USB " << board.usbVersion
                 << '\n';
    }
  }
  if (output.json) output.Write(all);
  if (all.empty()) session.Say("No USB adapter was found.");
  return all.empty() ? ExitCode::NoSensor : ExitCode::Success;
}

}  // namespace kestrel
