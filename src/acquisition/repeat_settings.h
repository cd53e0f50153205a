// What is asked of repeated captures: how often, how many, and how texts of it are checked.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "seams/error.h"

namespace kestrel {

enum class RepeatMode {
  Every,        // at fixed times
  AtOnce,       // each as soon as the one before is done
  FollowTimer,  // none are started: what the sensor captures by itself in timer mode is fetched
};

struct RepeatSettings {
  RepeatMode mode = RepeatMode::Every;
  std::chrono::nanoseconds period{std::chrono::seconds{10}};  // of Every, from start to start
  std::optional<int> times;                                   // none: until stopped
  bool operator==(const RepeatSettings&) const = default;
};

inline constexpr std::chrono::milliseconds kShortestRepeat{100};
inline constexpr std::chrono::hours kLongestRepeat{24 * 7};
inline constexpr int kMostRepeats = 1'000'000;

// Settings as they are typed. What the mode does not need may be any text.
struct RepeatTexts {
  RepeatMode mode = RepeatMode::Every;
  std::string_view seconds;
  std::optional<std::string_view> times;  // none: until stopped
};

// Which text an error is about, in its `where`.
inline constexpr const char* kRepeatSeconds = "seconds";
inline constexpr const char* kRepeatTimes = "times";

// The settings that the texts stand for, or what is wrong with one of them.
[[nodiscard]] std::variant<RepeatSettings, Error> CheckRepeat(const RepeatTexts& texts);

// The period that a REC_PRD word stands for: a count, and its unit in bits 9:8 (seconds, minutes,
// hours). None where the count is 0.
[[nodiscard]] std::optional<std::chrono::nanoseconds> TimerPeriod(std::int32_t recPrd);

}  // namespace kestrel
