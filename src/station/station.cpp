// How a station finds its sensor, and the steps that are neither records nor bands.
// SPDX-License-Identifier: MIT
#include "station/station.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <utility>

#include "acquisition/readings.h"
#include "acquisition/start_state.h"
#include "app/config_file.h"
#include "app/program_state.h"
#include "connection/init_interface.h"
#include "device/global_commands.h"
#include "device/rec_ctrl.h"
#include "device/register_list.h"
#include "device/register_log.h"
#include "device/register_models.h"
#include "regmap/command_words.h"
#include "regmap/register_table.h"
#include "simulator/signal/scenario.h"

namespace kestrel {
namespace {

// The row of a register by its name, in any case.
std::optional<std::int16_t> FindRow(std::string name) {
  std::ranges::transform(name, name.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (RegName[row] == name) return row;
  }
  return std::nullopt;
}

RegisterValue ValueOf(std::int16_t row, const Reading& reading) {
  return {RegName[row], RegAddr[row], reading.value, reading.scaled};
}

class NoBusyLabel : public BusyView {
 public:
  void ShowBusyLabel(bool /*shown*/) override {}
};

}  // namespace

Station::Station(const StationSite& site, Connection connection)
    : site_(site),
      connection_(std::move(connection)),
      loop_(site.clock, site.watch.interrupted),
      road_({site.clock, loop_, pointer_, messages_, site.files, site.locale, site.hardware}),
      recorder_(core_, loop_, end_, site_.watch),
      bands_(core_, loop_, messages_, end_, site_.watch),
      setups_(core_, loop_, end_, site_.watch) {
  ResetProgramNames();
  SetColours();
  core_.delay.SkipCalibration();
  SetStartDefaults();
  InitRegisterTable(core_.registers);
  if (!connection_.simulate) return;
  road_.Simulate(ScenarioNamed(connection_.scenario).value_or(RunningMachine()));
}

// The models hold references to the road.
Station::~Station() {
  ResetProgramNames();
}

Done Station::Connect() {
  ChooseInterface();
  InitInterface(core_);
  if (InterfaceType == kParallelPort && !core_.seams.driverService.Explanation().empty()) {
    return end_.Lost();
  }
  if (!ChooseAdapter() || !core_.registers.Reachable()) return end_.Lost();
  if (!gRecCtrl->ReadRecCtrl()) return end_.Lost();
  return Nothing{};
}

void Station::ChooseInterface() {
  if (!connection_.portDevice.empty()) site_.usePortDevice(connection_.portDevice);
  if (connection_.parallelAddress || !connection_.portDevice.empty()) {
    kestrel::ChooseInterface(kParallelPort);
    ChoosePort(connection_.parallelAddress.value_or(PortAddress));
  } else if (connection_.simulate || connection_.adapter ||
             !ReadConfigFile(core_.seams.files, messages_)) {
    kestrel::ChooseInterface(kUsbAdapter);
  }
}

// False when the one that is wanted is not there.
bool Station::ChooseAdapter() {
  if (!connection_.adapter || !UsbPresent) return true;
  if (!AdapterRecords.at(static_cast<std::size_t>(*connection_.adapter)).present) {
    messages_.Show("There is no adapter Ezusb-" + std::to_string(*connection_.adapter) + ".");
    return false;
  }
  core_.usb.SelectAdapter(*connection_.adapter);
  core_.usb.UsbSetupSpi(UsbSpiSetupValue);
  core_.usb.UsbSetSpiBits(UsbSpiBits);
  return true;
}

bool Station::CanRead(const std::string& name) {
  const auto row = FindRow(name);
  return row && RegReadable[*row];
}

bool Station::CanWrite(const std::string& name) {
  const auto row = FindRow(name);
  return row && RegWritable[*row];
}

Result<RegisterValue> Station::ReadRegister(const std::string& name) {
  if (!CanRead(name)) {
    return end_.Failed(FailureKind::Refused, "There is no readable register \"" + name + "\".");
  }
  const auto row = FindRow(name);
  const auto reading = core_.registers.Read(*row);
  if (!reading) return end_.Lost();
  return ValueOf(*row, *reading);
}

Result<std::vector<RegisterValue>> Station::ReadRegisters() {
  std::vector<RegisterValue> all;
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (RegReserved[row] || !RegReadable[row]) continue;
    const auto reading = core_.registers.Read(row);
    if (!reading) return end_.Lost();
    all.push_back(ValueOf(row, *reading));
  }
  return all;
}

Done Station::WriteRegister(const std::string& name, std::int32_t value) {
  if (!CanWrite(name)) {
    return end_.Failed(FailureKind::Refused, "There is no writable register \"" + name + "\".");
  }
  if (!core_.registers.Write(*FindRow(name), value)) return end_.Lost();
  return Nothing{};
}

Result<std::filesystem::path> Station::WriteRegisterList() {
  const auto listing = ReadAllRegisters(core_.registers, {});
  if (!listing) return end_.Lost();
  try {
    return WriteRegisterLog(core_.seams.files, core_.seams.locale, listing->text);
  } catch (const std::runtime_error& error) {
    return end_.Failed(FailureKind::Refused, error.what());
  }
}

Result<StationState> Station::ClearState() {
  if (!core_.registers.Write(row::COMMAND, CommandWord(CommandBit::ClearStatus)))
    return end_.Lost();
  return State();
}

Result<StationState> Station::ReadState() {
  return State();
}

Result<StationState> Station::State() {
  const auto status = ReadStatusFlags(core_.registers);
  const auto alarms = status ? ReadAlarms(core_.registers) : std::nullopt;
  const auto conditions = alarms ? ReadConditions(core_.registers) : std::nullopt;
  if (!conditions) return end_.Lost();
  return StationState{*status, *alarms, *conditions};
}

Done Station::SendFunction(int bit) {
  NoBusyLabel label;
  GlobalCommands commands(core_.registers, core_.delay, loop_, messages_, label);
  commands.cmdWrite_Click(bit);
  if (!core_.registers.Reachable()) return end_.Lost();
  return Nothing{};
}

std::vector<AdapterRecord> Station::Adapters() {
  core_.usb.FindAdapters();
  std::vector<AdapterRecord> present;
  std::ranges::copy_if(AdapterRecords, std::back_inserter(present), &AdapterRecord::present);
  return present;
}

bool Station::UseFolder(const std::filesystem::path& folder) {
  if (!core_.seams.files.CanWriteIn(folder)) return false;
  road_.UseFolder(folder);
  return true;
}

}  // namespace kestrel
