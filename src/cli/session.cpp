// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/session.h"

#include <ostream>

#include "app/config_file.h"
#include "app/program_state.h"
#include "connection/start.h"
#include "device/rec_ctrl.h"
#include "simulator/signal/scenario.h"

namespace kestrel {
namespace {

constexpr const char* kEraseLine = "\r\x1B[K";

}  // namespace

Session::Session(const Surroundings& surroundings, const Connection& connection)
    : surroundings_(surroundings),
      connection_(connection),
      hardware_(surroundings.hardware),
      files(surroundings.files),
      messages(surroundings.error),
      loop(surroundings.clock, surroundings.interrupted),
      core({surroundings.clock, loop, pointer_, messages, files, surroundings.locale, hardware_,
            hardware_, hardware_}),
      alarms(core.registers, window),
      plot(core.record, window, alarms, loop, messages),
      overlay(plot, window),
      log(core.record, files, surroundings.locale, loop, window),
      status(core.registers, alarms, loop, window),
      readout(core, status, alarms, plot, window, log, window),
      delay(loop),
      cycle(core, delay, status, alarms, readout, plot, overlay, window) {
  if (connection_.simulate) {
    simulator_ = std::make_unique<SimulatedHardware>(
        surroundings.clock, ScenarioNamed(connection_.scenario).value_or(RunningMachine()));
    hardware_.Connect({&simulator_->Adapter(), &simulator_->Port(), &simulator_->Service()});
  }
  window.OnProgress([this](const std::string& activity, int done, int total) {
    ShowProgress(total > 0 ? activity + " " + std::to_string(done * 100 / total) + " %"
                           : activity + " " + std::to_string(done) + " s");
  });
}

void Session::Prepare() {
  SetColours();
  core.delay.SkipCalibration();
  SetStartDefaults();
  InitRegisterTable(core.registers);
}

bool Session::Connect() {
  Prepare();
  if (!connection_.portDevice.empty()) surroundings_.usePortDevice(connection_.portDevice);
  if (connection_.parallelAddress || !connection_.portDevice.empty()) {
    InterfaceType = kParallelPort;
    PortAddress = connection_.parallelAddress.value_or(PortAddress);
  } else if (connection_.simulate || connection_.adapter || !ReadConfigFile(files, messages)) {
    InterfaceType = kUsbAdapter;
  }
  InitInterface(core);
  if (InterfaceType == kParallelPort && !core.seams.driverService.Explanation().empty()) {
    return false;
  }
  if (connection_.adapter && UsbPresent) {
    if (!AdapterRecords.at(static_cast<std::size_t>(*connection_.adapter)).present) {
      messages.Show("There is no adapter Ezusb-" + std::to_string(*connection_.adapter) + ".");
      return false;
    }
    core.usb.SelectAdapter(*connection_.adapter);
    core.usb.UsbSetupSpi(UsbSpiSetupValue);
    core.usb.UsbSetSpiBits(UsbSpiBits);
  }
  if (!RegisterAccess::Usable()) return false;
  gRecCtrl->ReadRecCtrl();
  return RegisterAccess::Usable();
}

void Session::ShowProgress(const std::string& text) {
  if (!surroundings_.showProgress) return;
  surroundings_.error << kEraseLine << text << std::flush;
  progressShown_ = true;
}

void Session::EndProgress() {
  if (progressShown_) surroundings_.error << kEraseLine << std::flush;
  progressShown_ = false;
}

}  // namespace kestrel
