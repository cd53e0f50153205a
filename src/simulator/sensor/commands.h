// The sensor's command register: what each bit of COMMAND does, and how long it takes.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "simulator/registers/register_file.h"
#include "simulator/sensor/alarms.h"
#include "simulator/sensor/flash_memory.h"
#include "simulator/sensor/recorder.h"
#include "simulator/sensor/surroundings.h"
#include "simulator/sensor/work.h"

namespace kestrel::sensor {

inline constexpr std::uint16_t kRecordStart = 1U << 11;  // of COMMAND

// A command is the sensor's work until its time has passed; its effect shows at the end of it.
class Commands {
 public:
  struct Parts {
    RegisterFile& registers;
    const Surroundings& surroundings;
    FlashMemory& flash;
    Alarms& alarms;
    Recorder& recorder;
    Work& work;
  };

  explicit Commands(const Parts& parts) : parts_(parts) {}

  // A word written to COMMAND: of several bits the lowest counts. A sensor that is busy takes no
  // command; during a capture a few bits act at once. Returns whether a command that takes no time
  // has begun and wants to be finished.
  [[nodiscard]] bool Take(std::uint16_t word);

  // The command's time has passed.
  void Finish();

  // The software reset, which is what happens at power-up too.
  void Restart();

 private:
  struct Command;

  [[nodiscard]] static const Command& Of(unsigned bit);
  void PowerDown();
  void SelfTest();
  void FactoryReset();
  void ClearStatusInSeries();
  void FlashTest();
  void SaveAlarmBand();
  void ClearAlarmBands();

  Parts parts_;
  unsigned bit_ = 0;
};

}  // namespace kestrel::sensor
