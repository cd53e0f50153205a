// What is told to others, as values, and their JSON: levels, alarms, status, spectra.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "publish/names.h"
#include "record/axis.h"

namespace kestrel::publish {

using Moment = std::chrono::system_clock::time_point;  // UTC

// Of a record, wherever it is told.
struct RecordFacts {
  std::string uid{};  // as the archive writes it, 32 hexadecimal digits
  Moment time{};      // when its read-out began
  int option = 0;     // sample-rate option, 0..3
  int window = 0;     // code: 0 rectangular, 1 Hanning, 2 flat top
  int range = 0;      // full scale in g
  bool operator==(const RecordFacts&) const = default;
};

struct AxisLevels {
  // None where the record cannot carry it.
  std::optional<double> rmsG{};
  std::optional<double> peakG{};
  std::optional<double> topHz{};        // of the largest line
  std::optional<double> severityMms{};  // velocity, mm/s RMS
  std::string zone{};                   // of the severity estimate, "A" to "D"; empty: not judged
  bool operator==(const AxisLevels&) const = default;
};

struct Levels {
  Names of{};
  RecordFacts record{};
  std::array<AxisLevels, 3> axes{};
  bool operator==(const Levels&) const = default;
};

enum class AlarmKind {
  Band,       // raised by the sensor itself
  Threshold,  // a level against a band of the program's
  Severity
};
enum class AlarmGrade { Warning, Fault };
enum class AlarmEvent { Begin, End };

// The begin or the end of an alarm.
struct Alarm {
  // The same for the same event for ever, of this machine and of no other: whatever comes twice
  // with it is told once.
  std::string id{};
  Names of{};
  AlarmEvent event = AlarmEvent::Begin;
  AlarmKind kind = AlarmKind::Band;
  AlarmGrade grade = AlarmGrade::Warning;
  Axis axis = Axis::X;
  std::optional<int> option{};  // sample-rate option of the band, 0..3
  std::optional<int> number{};  // of the band, from 1
  Moment time{};
  std::string uid{};  // of the record that told it; empty where none did
  std::optional<double> level{};
  std::optional<double> limit{};
  std::string unit{};  // of both: "g", "mm/s"
  bool operator==(const Alarm&) const = default;
};

enum class State {
  Starting,
  Up,       // captures go on
  Trouble,  // captures do not succeed; `note` says why
  Stopped,  // ended by its user
  Lost      // the process or its connection is gone: the broker says so
};

struct Status {
  Names of{};
  State state = State::Starting;
  Moment time{};
  std::optional<Moment> nextCapture{};
  std::optional<Moment> lastRecord{};
  std::int64_t records = 0;  // kept since the start
  std::int64_t missed = 0;   // captures that the plan asked for and that did not come
  int incidentsOpen = 0;
  int alarmsOn = 0;
  std::string note{};  // for people; may be empty
  bool operator==(const Status&) const = default;
};

// A spectrum as an array, for who asks for it.
struct Spectrum {
  Names of{};
  RecordFacts record{};
  double binHz = 0;                        // from one value to the next; the first is at 0 Hz
  std::array<std::vector<double>, 3> g{};  // peak
  bool operator==(const Spectrum&) const = default;
};

// The last level of the topic of each.
inline constexpr const char* kLevelsLeaf = "levels";
inline constexpr const char* kAlarmLeaf = "alarm";
inline constexpr const char* kStatusLeaf = "status";
inline constexpr const char* kSpectrumLeaf = "spectrum";
// Whoever publishes to it gets the latest spectrum.
inline constexpr const char* kSpectrumRequestLeaf = "spectrum/get";

// One line of JSON, UTF-8. Unknown numbers are null.
[[nodiscard]] std::string JsonOf(const Levels& levels);
[[nodiscard]] std::string JsonOf(const Alarm& alarm);
[[nodiscard]] std::string JsonOf(const Status& status);
[[nodiscard]] std::string JsonOf(const Spectrum& spectrum);
// What the broker tells when the process or its connection is gone.
[[nodiscard]] std::string LostJson(const Names& names);

// "begin", "band", "warning", "up": as the messages name them.
[[nodiscard]] const char* NameOf(AlarmEvent event);
[[nodiscard]] const char* NameOf(AlarmKind kind);
[[nodiscard]] const char* NameOf(AlarmGrade grade);
[[nodiscard]] const char* NameOf(State state);

}  // namespace kestrel::publish
