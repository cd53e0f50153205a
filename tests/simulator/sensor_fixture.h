// A simulated sensor spoken to in frames, with addresses of its own.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <utility>
#include <vector>

#include "simulator/sensor/simulated_sensor.h"
#include "support/fake_clock.h"

namespace kestrel {

using namespace std::chrono_literals;

// Byte addresses, written out again here so that a slip in the sensor's own list shows.
namespace reg {
inline constexpr std::uint8_t kEndurance = 0x00;
inline constexpr std::uint8_t kXNull = 0x02;
inline constexpr std::uint8_t kRecFlshCnt = 0x08;
inline constexpr std::uint8_t kSupply = 0x0A;
inline constexpr std::uint8_t kTemp = 0x0C;
inline constexpr std::uint8_t kFftAvg = 0x0E;
inline constexpr std::uint8_t kPointer = 0x10;
inline constexpr std::uint8_t kRecPntr = 0x12;
inline constexpr std::uint8_t kXBuf = 0x14;
inline constexpr std::uint8_t kRecCnt = 0x1A;
inline constexpr std::uint8_t kRecCtrl = 0x1C;
inline constexpr std::uint8_t kRecPrd = 0x1E;
inline constexpr std::uint8_t kFLow = 0x20;
inline constexpr std::uint8_t kAlmPntr = 0x30;
inline constexpr std::uint8_t kAlmSMag = 0x32;
inline constexpr std::uint8_t kAlmCtrl = 0x34;
inline constexpr std::uint8_t kDioCtrl = 0x36;
inline constexpr std::uint8_t kGpioCtrl = 0x38;
inline constexpr std::uint8_t kStatus = 0x3C;
inline constexpr std::uint8_t kCommand = 0x3E;
inline constexpr std::uint8_t kXStat = 0x40;
inline constexpr std::uint8_t kXPeak = 0x46;
inline constexpr std::uint8_t kTimeLow = 0x4C;
inline constexpr std::uint8_t kTimeHigh = 0x4E;
inline constexpr std::uint8_t kXFreq = 0x70;
inline constexpr std::uint8_t kRecInfo = 0x76;
}  // namespace reg

// Bits of COMMAND.
namespace command {
inline constexpr std::uint16_t kAutonull = 0x0001;
inline constexpr std::uint16_t kPowerDown = 0x0002;
inline constexpr std::uint16_t kSelfTest = 0x0004;
inline constexpr std::uint16_t kFactoryReset = 0x0008;
inline constexpr std::uint16_t kClearStatus = 0x0010;
inline constexpr std::uint16_t kFlashTest = 0x0020;
inline constexpr std::uint16_t kFlashUpdate = 0x0040;
inline constexpr std::uint16_t kSoftwareReset = 0x0080;
inline constexpr std::uint16_t kClearRecords = 0x0100;
inline constexpr std::uint16_t kClearBands = 0x0200;
inline constexpr std::uint16_t kResetPointer = 0x0400;
inline constexpr std::uint16_t kStartStop = 0x0800;
inline constexpr std::uint16_t kSaveBand = 0x1000;
inline constexpr std::uint16_t kRetrieveRecord = 0x2000;
inline constexpr std::uint16_t kRetrieveBand = 0x4000;
inline constexpr std::uint16_t kClearNulls = 0x8000;
}  // namespace command

// The registers ALM_F_LOW to ALM_Z_MAG2: first and last bin, three warnings, three faults.
using Band = std::array<std::uint16_t, 8>;

// A sensor on a bench, spoken to in SPI frames.
class Bench {
 public:
  explicit Bench(Scenario scenario = SingleTone(0.0, 0.0)) : sensor(clock, std::move(scenario)) {}

  std::uint16_t Read(std::uint8_t address) {
    sensor.Exchange(static_cast<std::uint16_t>(address << 8U));
    return sensor.Exchange(0x0000);
  }
  void WriteByte(std::uint8_t address, std::uint8_t data) {
    sensor.Exchange(static_cast<std::uint16_t>(0x8000U | unsigned{address} << 8U | data));
  }
  void Write(std::uint8_t address, std::uint16_t word) {
    WriteByte(static_cast<std::uint8_t>(address + 1), static_cast<std::uint8_t>(word >> 8U));
    WriteByte(address, static_cast<std::uint8_t>(word & 0xFFU));
  }
  // Gives a command and lets time pass until no command can still be at work.
  void Command(std::uint16_t word) {
    Give(word);
    clock.Advance(200ms);
  }
  void Give(std::uint16_t word) {
    if (word >= 0x100) {
      WriteByte(reg::kCommand + 1, static_cast<std::uint8_t>(word >> 8U));
    } else {
      WriteByte(reg::kCommand, static_cast<std::uint8_t>(word));
    }
  }
  void StartStop() { Give(command::kStartStop); }
  void StopRequest() { sensor.Exchange(0xE8E8); }
  std::uint16_t Status() { return Read(reg::kStatus); }
  bool DataReady() { return (Status() & 0x80U) != 0; }

  // One whole capture; it may take up to `limit`.
  void Capture(std::chrono::nanoseconds limit = 60s) {
    StartStop();
    clock.Advance(limit);
    ASSERT_TRUE(DataReady());
  }
  void WriteBandRegisters(const Band& band) {
    for (unsigned i = 0; i < band.size(); ++i) {
      Write(static_cast<std::uint8_t>(reg::kFLow + 2 * i), band[i]);
    }
  }
  void SaveBand(std::uint16_t pointer, const Band& band) {
    WriteBandRegisters(band);
    Write(reg::kAlmPntr, pointer);
    Command(command::kSaveBand);
  }
  std::uint16_t Stat(unsigned axis) {
    return Read(static_cast<std::uint8_t>(reg::kXStat + 2 * axis));
  }
  std::vector<std::uint16_t> Buffer(unsigned axis, unsigned length) {
    std::vector<std::uint16_t> words;
    for (unsigned i = 0; i < length; ++i) {
      Write(reg::kPointer, static_cast<std::uint16_t>(i));
      words.push_back(Read(static_cast<std::uint8_t>(reg::kXBuf + 2 * axis)));
    }
    return words;
  }
  std::vector<std::uint16_t> Spectrum(unsigned axis) { return Buffer(axis, 256); }
  std::vector<std::int16_t> Samples(unsigned axis) {
    std::vector<std::int16_t> samples;
    for (const std::uint16_t word : Buffer(axis, 512)) {
      samples.push_back(static_cast<std::int16_t>(word));
    }
    return samples;
  }

  FakeClock clock;
  SimulatedSensor sensor;
};

class SensorTest : public ::testing::Test, public Bench {};

inline constexpr double kFullRateHz = 100189.9;
inline constexpr double kSampleLsbG[] = {0.0000306, 0.0001526, 0.0006104, 0.0023842};
inline constexpr double kMagnitudeLsbG[] = {0.0000153, 0.0000763, 0.0003052, 0.0011921};

// Frequency of a bin at a sample-rate option.
inline double BinHz(double bin, unsigned option) {
  double rate = kFullRateHz;
  for (unsigned i = 0; i < option; ++i) rate /= 8.0;
  return bin * rate / 512.0;
}

// REC_CTRL word.
inline std::uint16_t RecCtrl(unsigned mode, unsigned range, unsigned option, unsigned window,
                             unsigned storage = 0) {
  return static_cast<std::uint16_t>(window << 12U | option << 8U | range << 4U | storage << 2U |
                                    mode);
}

}  // namespace kestrel
