// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "acquisition/capture_cycle.h"
#include "acquisition/window_delay.h"
#include "app/files_in_folder.h"
#include "cli/console.h"
#include "cli/hidden_window.h"
#include "connection/core.h"
#include "platform/hardware_switch.h"
#include "plot/band_overlay.h"
#include "simulator/simulated_hardware.h"

namespace kestrel {

// Where the command-line program runs; made by its entry point.
struct Surroundings {
  Clock& clock;
  Files& files;
  Locale& locale;
  Hardware hardware;  // the system's devices
  // Takes a device for the parallel port, where the system has names for ports.
  std::function<void(const std::string&)> usePortDevice = [](const auto&) {};  // GCOVR_EXCL_LINE
  std::function<bool()> interrupted;  // Ctrl-C since last asked
  std::ostream& out;
  std::ostream& error;
  bool showProgress = false;  // the error stream is somebody's terminal
};

// Which sensor to use. With nothing chosen it is the one that CommPort.cfg names, or else the first
// adapter that is found.
struct Connection {
  bool simulate = false;
  std::string scenario;        // of the simulated sensor; empty for the usual one
  std::optional<int> adapter;  // 0..3
  std::optional<std::int16_t> parallelAddress;
  std::string portDevice;  // of the parallel port, whatever its address; empty for that address's
};

// The program's logic, connected to a sensor.
class Session {
 public:
  Session(const Surroundings& surroundings, const Connection& connection);

  // Prepares the interface. False when there is none; the reason has been shown.
  bool Connect();

  // Prepares the register table only: for what needs no sensor.
  void Prepare();

  // One line on the error stream that the next one overwrites, where somebody is watching.
  void ShowProgress(const std::string& text);
  void EndProgress();

 private:
  const Surroundings& surroundings_;
  const Connection& connection_;
  bool progressShown_ = false;
  std::unique_ptr<SimulatedHardware> simulator_;
  HardwareSwitch hardware_;
  NoPointer pointer_;

 public:
  FilesInFolder files;
  StreamMessages messages;
  ConsoleLoop loop;
  Core core;
  HiddenWindow window;
  AlarmStatus alarms;
  SpectrumPlot plot;
  BandOverlay overlay;  // always off
  DataLog log;
  StatusDisplay status;
  CaptureReadout readout;
  WindowDelay delay;
  CaptureCycle cycle;
};

}  // namespace kestrel
