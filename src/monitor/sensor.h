// The sensor of a monitor: reached, kept to its settings, captured.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "monitor/patience.h"
#include "monitor/plan/plan.h"
#include "setup/setup.h"
#include "station/station.h"

namespace kestrel::monitor {

// Why a step with the sensor gave nothing.
struct Trouble {
  enum class Kind {
    Away,    // it cannot be reached
    Silent,  // it is there and does not do it
    Ended    // an end was asked for
  };
  Kind kind = Kind::Away;
  std::string text{};
};
template <typename Value>
using Tried = std::variant<Value, Trouble>;

// What was found when the sensor was reached, or before a capture.
struct SensorNews {
  std::string replaced{};  // another adapter than before: which
  bool restarted = false;  // it counts its records anew
  std::string putBack{};   // settings that were others than set, and are as set again
};

struct NewestRecord {
  Record record{};
  bool isInFlash = false;  // it was stored as it was taken
};

struct StoredRecords {
  std::vector<Record> records{};  // those that could be read whole
  std::int32_t count = 0;         // REC_CNT after them
  bool areAll = false;
};

class Sensor {
 public:
  Sensor(Station& station, Patience& patience) : station_(station), patience_(patience) {}

  [[nodiscard]] Tried<SensorNews> Connect();
  // Puts back settings that are others than this program left them.
  [[nodiscard]] Tried<SensorNews> Check();
  // One record, with Wide one of each rate option, the finest first.
  [[nodiscard]] Tried<std::vector<Record>> Capture(const Step& step);

  // Of timer mode.
  [[nodiscard]] Tried<std::int32_t> BeginSeries(const Step& step, std::chrono::seconds period);
  [[nodiscard]] Tried<std::int32_t> Count();  // REC_CNT
  // The record in the buffers; nothing where the sensor took another meanwhile.
  [[nodiscard]] Tried<std::optional<NewestRecord>> Newest();
  // Of the flash, from where the last call ended. A record that the sensor takes meanwhile is to be
  // fetched first: the next one out of the flash would take its place.
  [[nodiscard]] Tried<StoredRecords> Stored();

 private:
  static constexpr std::size_t kRegisters = setup::kRegisters;
  using Words = std::array<std::optional<std::int32_t>, kRegisters>;

  [[nodiscard]] std::optional<Trouble> Configure(const Step& step, std::int16_t mode,
                                                 std::int16_t option);
  [[nodiscard]] Tried<Record> CaptureOne(const Step& step, std::int16_t option);
  [[nodiscard]] Trouble TroubleOf(const Failure& failure) const;
  [[nodiscard]] std::optional<std::int32_t> Read(std::int16_t row);
  // None where it answers.
  [[nodiscard]] std::optional<Trouble> Mute();
  // Nothing where the sensor was lost.
  [[nodiscard]] std::optional<Words> ReadWords();
  [[nodiscard]] static setup::Setup SetupOf(const Words& words);
  // Indices of registers that are others than set.
  [[nodiscard]] std::vector<std::size_t> Others(const Words& words) const;
  // What is about to be set.
  void Forget(std::initializer_list<setup::Register> registers);
  // As they were set; false where the sensor was lost.
  [[nodiscard]] bool Note(std::initializer_list<setup::Register> registers);

  Station& station_;
  Patience& patience_;
  // None before the first; one is missing where a step was lost as it set it.
  Words asSet_{};
  std::optional<RecordSetup> setup_;  // as the sensor is set; none where that is not known
  std::optional<SensorIdentity> identity_;
  std::optional<std::int32_t> count_;  // REC_CNT as last seen
  std::int32_t stored_ = 0;            // REC_FLSH_CNT as last seen
  int nextStored_ = 0;                 // number in the flash
};

}  // namespace kestrel::monitor
