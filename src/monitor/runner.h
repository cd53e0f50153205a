// What a monitor does next, told the time and what happened.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "monitor/plan/plan.h"
#include "monitor/schedule.h"

namespace kestrel::monitor {

struct Next {
  enum class Do {
    Wait,         // until `until`, and ask again
    Connect,      // look for the sensor and make it ready
    Capture,      // step `step` of the plan
    BeginSeries,  // set the sensor's timer mode and start it
    LookAtCount,  // read REC_CNT and tell it
    Fetch,        // the newest record of the series
    FetchStored,  // records in its flash: a series may have gone on while it was not reached
    End
  };
  Do what = Do::Wait;
  std::chrono::nanoseconds until{0};
  std::size_t step = 0;
  bool operator==(const Next&) const = default;
};

// Decides and does nothing. Times are of a clock that goes on while the machine sleeps.
class Runner {
 public:
  using Time = std::chrono::nanoseconds;
  Runner(const Plan& plan, Time start);

  [[nodiscard]] Next Decide(Time now);
  // Captures of the plan that went by without being begun since last asked; of a series those that
  // would have come while the sensor was away.
  [[nodiscard]] std::int64_t TakePassed(Time now);
  [[nodiscard]] Time NextCapture() const { return schedule_.Next(); }
  [[nodiscard]] bool IsConnected() const { return connected_; }

  void Connected(Time now);
  void Lost(Time now);   // or looked for in vain
  void Began(Time now);  // the capture that was decided for
  // Nothing is begun for a reason that the sensor has no part in.
  void Hold(bool held) { held_ = held; }
  [[nodiscard]] bool IsHeld() const { return held_; }
  void Stop() { stopped_ = true; }

  // Of a series.
  void SeriesBegan(std::int32_t count, Time now);
  void CountSeen(std::int32_t count, Time now);
  // `isNew`: it had not been had before.
  void Fetched(std::int32_t count, bool isNew, Time now);
  // So many came out of the flash that had not been had before. Once all of it was read: how many
  // records the sensor took that can no longer be had.
  [[nodiscard]] std::int64_t StoredFetched(std::int64_t found, bool isAll);

 private:
  [[nodiscard]] Next OfSeries(Time now);
  [[nodiscard]] Time LookEvery() const;

  Schedule schedule_;
  std::size_t steps_;
  bool followsTimer_;
  Time period_;
  bool connected_ = false;
  bool held_ = false;
  bool stopped_ = false;
  Time nextTry_;
  Time tryAfter_;
  // Of a series.
  bool seriesRuns_ = false;
  bool lookInFlash_ = true;  // the sensor was out of reach, or was looked at too late
  bool lookFirst_ = false;   // at its count: a series ran before that
  std::int64_t behind_ = 0;  // records taken that were not had, and may be in the flash
  std::optional<std::int32_t> seen_{};
  std::optional<std::int32_t> fetched_{};
  Time lookedAt_{0};
  Time movedAt_{0};
};

}  // namespace kestrel::monitor
