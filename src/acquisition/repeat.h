// Repeated captures: what is to be done next and when, how far they are, and where gaps are.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "acquisition/repeat_settings.h"
#include "seams/clock.h"

namespace kestrel {

// While the sensor was lost.
struct RepeatGap {
  std::chrono::system_clock::time_point from;               // UTC
  std::optional<std::chrono::system_clock::time_point> to;  // UTC; none while it lasts
  std::string reason;
  bool operator==(const RepeatGap&) const = default;
};

enum class RepeatState {
  Waiting,    // for the time of the next capture, or for the sensor's next one
  Capturing,  // or fetching what the sensor has captured
  Paused,     // until the sensor is back or a question is answered
  Ended,
};

// How far repeated captures are. Times are durations from now on, seconds.
struct RepeatProgress {
  RepeatSettings settings;
  RepeatState state = RepeatState::Ended;
  int done = 0;
  // Captures that were due while an earlier one still ran or the sensor was lost; those that the
  // sensor took and that were not fetched before the next one.
  std::int64_t missed = 0;
  std::optional<double> nextIn;     // to the next capture; none while one runs or none is known
  std::optional<double> remaining;  // to the end of the last one; none when it is not known
  bool ending = false;              // no more will begin after the one under way
  std::string reason;               // of a pause, or of an end before the last capture
  std::vector<RepeatGap> gaps;      // the newest, at most kMostGaps
  bool operator==(const RepeatProgress&) const = default;
};

inline constexpr std::size_t kMostGaps = 1000;

// What is to be done.
struct RepeatStep {
  enum class Do {
    Wait,         // until `until`, and ask again
    Capture,      // as Start does
    Fetch,        // the newest record that the sensor has taken by itself
    LookAtCount,  // read REC_CNT and tell it
    SeekSensor,   // look whether it is back
    Nothing,      // a capture is under way
    End,
  };
  Do what = Do::Nothing;
  std::chrono::nanoseconds until{0};  // Clock::Monotonic()
  bool operator==(const RepeatStep&) const = default;
};

// Decides, told what happened, what is to be done next. Capture n of a fixed rate is due at the
// start plus n periods; one that lasts longer is followed by the next at once, and those that
// should have begun meanwhile are counted as missed, never caught up on. It does nothing itself.
class Repeat {
 public:
  Repeat(Clock& clock, const RepeatSettings& settings);

  [[nodiscard]] RepeatStep Next();
  [[nodiscard]] RepeatProgress Progress();
  [[nodiscard]] const RepeatSettings& Settings() const { return settings_; }
  [[nodiscard]] bool Ended() const { return ended_; }

  // A capture that Next() asked for, or a fetch.
  void CaptureBegan();
  void CaptureDone();
  void CaptureStopped();                       // by the user: the end
  void CaptureFailed(const std::string& why);  // though the sensor is there: the end
  // The sensor was not reached, while a capture ran or in between.
  void SensorLost(const std::string& why);
  void SensorSought() { lookedAt_ = Now(); }  // in vain
  void SensorBack();
  // Nothing is begun, but for a reason that the sensor has no part in.
  void Hold(const std::string& why) { held_ = why; }
  void Release() { held_.clear(); }
  // The user wants no more. A capture under way is completed and counted.
  void UserStopped();

  // In timer mode: what the sensor is set to, REC_CNT as it is now, and as it was told by a record
  // of the series that was read, whoever read it.
  void SensorPeriod(std::chrono::nanoseconds period) { sensorPeriod_ = period; }
  void CountSeen(std::int32_t count);
  void CountFetched(std::int32_t count);
  // The newest record could not be read before the sensor took another one.
  void FetchMissed(const std::string& why);

 private:
  using Time = std::chrono::nanoseconds;

  [[nodiscard]] Time Now();
  [[nodiscard]] bool Follows() const { return settings_.mode == RepeatMode::FollowTimer; }
  [[nodiscard]] RepeatStep NextOfSeries(Time now) const;
  [[nodiscard]] RepeatStep NextCapture(Time now) const;
  [[nodiscard]] std::int64_t SlotAt(Time now) const { return (now - start_) / settings_.period; }
  [[nodiscard]] Time Due() const { return start_ + (lastSlot_ + 1) * settings_.period; }
  [[nodiscard]] Time LookEvery() const;
  [[nodiscard]] std::optional<double> NextIn(Time now) const;
  [[nodiscard]] std::optional<double> Remaining(Time now) const;
  void NoteCount(std::int32_t count, Time now);
  void CountOne();
  void End(const std::string& why);

  Clock& clock_;
  RepeatSettings settings_;
  Time latest_;  // the clock never goes back
  Time start_;
  int done_ = 0;
  std::int64_t missed_ = 0;
  std::int64_t lastSlot_ = -1;  // of a fixed rate: the last one that began
  bool capturing_ = false;
  Time began_{0};
  std::optional<Time> lasted_;  // the last capture that was completed
  bool ended_ = false;
  bool ending_ = false;
  bool lost_ = false;
  Time lostAt_{0};
  std::string held_;
  std::string note_;  // why it ended, or what went wrong without an end
  std::optional<Time> lookedAt_;
  std::vector<RepeatGap> gaps_;

  // Of timer mode.
  std::optional<std::int32_t> seen_;     // REC_CNT
  std::optional<std::int32_t> fetched_;  // REC_CNT up to which records count as dealt with
  bool postponed_ = false;               // a fetch, to after the next look
  bool seriesMayHaveEnded_ = false;      // the sensor was lost; it may have started anew
  bool beginSeries_ = false;
  std::optional<Time> sensorPeriod_;
  std::optional<Time> moved_;  // when REC_CNT was last seen to move
};

}  // namespace kestrel
