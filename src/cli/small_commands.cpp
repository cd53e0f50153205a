// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/small_commands.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "cli/record_report.h"
#include "device/global_commands.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"
#include "transport/usb_adapter.h"

namespace kestrel {
namespace {

class NoBusyLabel : public BusyView {
 public:
  void ShowBusyLabel(bool /*shown*/) override {}
};

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
  NoBusyLabel label;
  GlobalCommands commands(session.core.registers, session.core.delay, session.loop,
                          session.messages, label);
  commands.cmdWrite_Click(bit_);
  if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
  if (output.json) output.Write({{"sent", bit_}});
  return ExitCode::Success;
}

void StatusCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("status", "Report status flags, alarms, supply and temperature");
  word_->add_flag("--clear", clear_, "Clear the flags first");
}

ExitCode StatusCommand::Run(Session& session, const Output& output) {
  if (clear_) {
    session.status.ClearStatus("status");
  } else {
    session.status.ReadStatus("status");
  }
  session.alarms.DisplaySpectralALarmsStatus();
  RegisterAccess& registers = session.core.registers;
  registers.ReadReg(row::SUPPLY_OUT);
  const auto supply = static_cast<double>(RegScaled);
  registers.ReadReg(row::TEMP_OUT);
  const auto temperature = static_cast<double>(RegScaled);
  if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
  if (output.json) {
    output.Write({{"status", StatusJson(session.window)},
                  {"supply_v", supply},
                  {"temperature_c", temperature}});
    return ExitCode::Success;
  }
  PrintStatus(output.out, session.window);
  output.out << ConditionsText(supply, temperature);
  return ExitCode::Success;
}

void AdaptersCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("adapters", "List the USB adapters that are attached");
}

ExitCode AdaptersCommand::Run(Session& session, const Output& output) {
  session.core.usb.FindAdapters();
  Json all = Json::array();
  for (const AdapterRecord& board : AdapterRecords) {
    if (!board.present) continue;
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
  if (all.empty()) session.messages.Show("No USB adapter was found.");
  return all.empty() ? ExitCode::NoSensor : ExitCode::Success;
}

}  // namespace kestrel
