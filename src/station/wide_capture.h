// A wide spectrum's captures over a station, with the sensor's settings put back afterwards.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "acquisition/sensor_return.h"
#include "acquisition/wide_run.h"
#include "record/record.h"
#include "station/station.h"

namespace kestrel {

struct WideCaptureWish {
  RecordSetup setup{};        // range, window and averages; mode and option are the run's own
  unsigned options = 0b1111;  // rate options, a bit each
  // How long a lost sensor is sought, so that its settings can be put back.
  std::chrono::nanoseconds patience = std::chrono::seconds(20);
};

struct WideCaptured {
  std::vector<Record> records{};  // those that are complete, as they were taken
  WideProgress end{};             // why no more, and which settings are not as they were
  // What ended it before the last capture; an interrupt is one. None: all are complete.
  std::optional<Failure> failure{};
};

// The station has been connected. Its steps block; an interrupt ends the capture under way, keeps
// what is complete and puts the settings back.
class WideCapture {
 public:
  WideCapture(Station& station, WideCaptureWish wish);

  // After each complete capture, and with all progress; both may be left out.
  void OnRecord(std::function<void(const Record&)> taken) { taken_ = std::move(taken); }
  void OnProgress(std::function<void(const WideProgress&)> told) { told_ = std::move(told); }

  [[nodiscard]] WideCaptured Run();

 private:
  // What the sensor holds, as words.
  struct Words {
    std::int32_t recCtrl = 0;
    std::int32_t fftAvg = 0;
    bool operator==(const Words&) const = default;
  };

  [[nodiscard]] std::optional<Words> ReadWords();
  [[nodiscard]] std::optional<Failure> ReadBefore();
  void Take(const WideStep& step);
  void Set(int option);
  void Capture(int option);
  void PutBack();
  void Seek();
  void Fail(const Failure& failure);
  [[nodiscard]] Failure Lost();
  void Tell();

  Station& station_;
  WideCaptureWish wish_;
  std::function<void(const Record&)> taken_ = [](const Record&) {};
  std::function<void(const WideProgress&)> told_ = [](const WideProgress&) {};
  SensorReturn return_;
  RecordSetup before_;
  Words wordsBefore_;
  std::optional<WideRun> run_;
  std::optional<std::chrono::nanoseconds> soughtUntil_;
  WideCaptured captured_;
};

}  // namespace kestrel
