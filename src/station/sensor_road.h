// The road from a program to its one sensor, be it real or simulated.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "app/files_in_folder.h"
#include "connection/core.h"
#include "platform/hardware_switch.h"
#include "simulator/simulated_hardware.h"

namespace kestrel {

// Where a road begins: what a program asks of the world outside.
struct RoadSite {
  Clock& clock;
  EventLoop& loop;
  MousePointer& pointer;
  Messages& messages;
  Files& files;
  Locale& locale;
  Hardware hardware;  // the system's devices
};

// The one place where a program's road to its sensor is put together, for windows and for programs
// without: the seams, the switch between the system's devices and a simulated sensor, the folder
// that files go to, and the core over all of them. It asks the sensor nothing by itself.
class SensorRoad {
 public:
  explicit SensorRoad(const RoadSite& site);
  SensorRoad(const SensorRoad&) = delete;
  SensorRoad& operator=(const SensorRoad&) = delete;
  ~SensorRoad() = default;

  // Puts a simulated sensor into the place of the system's devices, its adapter plugged in. It is
  // the same one whenever this is done again; only the first scenario counts.
  void Simulate(const Scenario& scenario = RunningMachine());
  [[nodiscard]] bool IsSimulated() const { return core.simulated; }
  // The cable of the simulated sensor's adapter, in or out; Simulate comes first.
  void Plug(bool in);

  // Where files go from now on.
  void UseFolder(std::filesystem::path folder) { files_.SetFolder(std::move(folder)); }

 private:
  Clock& clock_;
  std::unique_ptr<SimulatedHardware> simulator_;
  HardwareSwitch hardware_;
  FilesInFolder files_;

 public:
  Core core;
};

// What the windows may do with the simulated sensor.
struct SimulatorControl {
  // Puts it in the place of the system's devices.
  std::function<void()> connect = [] {};
  std::function<bool()> isConnected = [] { return false; };
  // Its adapter's cable: in or out.
  std::function<void(bool)> plug = [](bool) {};
};

// That of a road, which outlives it; a sensor that is not there yet begins in this scenario.
[[nodiscard]] SimulatorControl ControlOf(SensorRoad& road, Scenario scenario = RunningMachine());

}  // namespace kestrel
