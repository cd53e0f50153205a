// One sensor, for use without windows: connect, configure, capture, read and write, by values.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "connection/core.h"
#include "record/record.h"
#include "station/noted_messages.h"
#include "station/recorder.h"
#include "station/result.h"
#include "station/sensor_bands.h"
#include "station/sensor_road.h"
#include "station/sensor_setups.h"
#include "station/unattended_loop.h"
#include "station/watch.h"

namespace kestrel {

// Which sensor to use. With nothing chosen it is the one that CommPort.cfg names, or else the first
// adapter that is found.
struct Connection {
  bool simulate = false;
  std::string scenario;        // of the simulated sensor; empty or unknown: the running machine
  std::optional<int> adapter;  // 0..3
  std::optional<std::int16_t> parallelAddress;
  std::string portDevice;  // of the parallel port, whatever its address; empty for that address's
};

// Where a station stands; made by its owner, and outlives it.
struct StationSite {
  Clock& clock;
  Files& files;
  Locale& locale;
  Hardware hardware;  // the system's devices
  // Takes a device for the parallel port, where the system has names for ports.
  std::function<void(const std::string&)> usePortDevice = [](const auto&) {};  // GCOVR_EXCL_LINE
  Watch watch;
};

// A register as it was read.
struct RegisterValue {
  std::string name;
  std::int32_t address = 0;
  std::int32_t value = 0;  // decoded, perhaps signed
  float scaled = 0;        // in the register's own unit
};

// STATUS, alarms and conditions at one moment.
struct StationState {
  StatusFlags status;
  AlarmState alarms;
  Conditions conditions;  // the record count is not read
};

// A road to a sensor with all that can be done over it, without windows. The program-wide names
// (the register table, the record at hand, ...) belong to the station that stands: there is one at
// a time. Its steps block, tell their progress and look for an interrupt as the site's watch has
// it, and never throw for what sensor or files do. A lost sensor fails the step; connect again.
class Station {
 public:
  explicit Station(const StationSite& site, Connection connection = {});
  ~Station();
  Station(const Station&) = delete;
  Station& operator=(const Station&) = delete;

  // Finds the interface, makes it ready and reads how the sensor records. Everything below but
  // Adapters and bands from files needs it first.
  Done Connect();

  // How the sensor records, and records themselves.
  [[nodiscard]] Recorder& Records() { return recorder_; }
  // The alarm bands in its flash.
  [[nodiscard]] SensorBands& Bands() { return bands_; }

  // Its whole configuration.
  [[nodiscard]] SensorSetups& Setups() { return setups_; }

  // A register by its name, in any case, or every readable one that is not reserved.
  Result<RegisterValue> ReadRegister(const std::string& name);
  Result<std::vector<RegisterValue>> ReadRegisters();
  // `value` 0..65535.
  Done WriteRegister(const std::string& name, std::int32_t value);
  [[nodiscard]] static bool CanRead(const std::string& name);
  [[nodiscard]] static bool CanWrite(const std::string& name);
  // Registers_LOG.txt in the folder of the files; returns its path.
  Result<std::filesystem::path> WriteRegisterList();

  Result<StationState> ReadState();
  // Clears the flags of STATUS first.
  Result<StationState> ClearState();

  // One of the sensor's sixteen functions, 0..15; waits as long as the sensor needs.
  Done SendFunction(int bit);

  // The boards that answer now, whichever is used.
  [[nodiscard]] std::vector<AdapterRecord> Adapters();

  // Where files go from now on. False when nobody can write there.
  [[nodiscard]] bool UseFolder(const std::filesystem::path& folder);
  [[nodiscard]] Files& FilesHere() { return core_.seams.files; }

  // Waits; false when an interrupt ended it.
  [[nodiscard]] bool Pause(std::chrono::nanoseconds duration) { return loop_.Pause(duration); }

  // What was worth a message since the last call and failed nothing.
  [[nodiscard]] std::vector<std::string> TakeNotes() { return messages_.Take(); }

  // Where progress is told from now on; returns where it was told before.
  std::function<void(const Progress&)> TellProgressTo(std::function<void(const Progress&)> told) {
    return std::exchange(site_.watch.progress, std::move(told));
  }

  // The road to the sensor, for what has no step of its own here.
  [[nodiscard]] Core& Road() { return core_; }

 private:
  class NoPointer : public MousePointer {
   public:
    void ShowHourglass() override {}  // GCOVR_EXCL_LINE
    void ShowDefault() override {}    // GCOVR_EXCL_LINE
  };

  void ChooseInterface();
  [[nodiscard]] bool ChooseAdapter();
  Result<StationState> State();

  StationSite site_;
  Connection connection_;
  NotedMessages messages_;
  StepEnd end_{messages_};
  NoPointer pointer_;
  UnattendedLoop loop_;
  SensorRoad road_;
  Core& core_ = road_.core;
  Recorder recorder_;
  SensorBands bands_;
  SensorSetups setups_;
};

}  // namespace kestrel
