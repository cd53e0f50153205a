// The checks of what is typed about repeated captures.
// SPDX-License-Identifier: MIT
#include "acquisition/repeat_settings.h"

#include <algorithm>
#include <cmath>

#include "numeric/number_parse.h"

namespace kestrel {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr std::size_t kQuotedBytes = 40;

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// A text as it was typed; of a long one its beginning, cut between characters.
std::string Quoted(std::string_view text) {
  std::size_t length = std::min(text.size(), kQuotedBytes);
  const auto continues = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  while (length > 0 && continues(length)) --length;
  const bool cut = length < text.size();
  return "\"" + std::string(text.substr(0, length)) + (cut ? "..." : "") + "\"";
}

std::variant<std::chrono::nanoseconds, Error> CheckSeconds(std::string_view text) {
  constexpr Seconds kShortest = kShortestRepeat;
  constexpr Seconds kLongest = kLongestRepeat;
  const auto wrong = [](std::string what, std::string cure) {
    return Error{std::move(what), kRepeatSeconds, std::move(cure)};
  };
  if (IsBlank(text)) {
    return wrong("The time from one capture to the next is missing.", "Type it in seconds.");
  }
  const auto number = WholeTextNumber(text);
  if (!number) {
    return wrong(Quoted(text) + " is not a number of seconds.",
                 "Type digits, with a point as decimal mark: 2.5");
  }
  if (*number < kShortest.count()) {
    return wrong(Quoted(text) + " is too short: 0.1 s is the shortest.",
                 "For captures without a pause choose At once.");
  }
  if (*number > kLongest.count()) {
    return wrong(Quoted(text) + " is too long.", "The longest is 604800 s, one week.");
  }
  return std::chrono::round<std::chrono::nanoseconds>(Seconds{*number});
}

std::variant<int, Error> CheckTimes(std::string_view text) {
  const std::string cure = "Type a whole number from 1 to 1000000, or choose Until stopped.";
  const auto wrong = [&](std::string what) { return Error{std::move(what), kRepeatTimes, cure}; };
  if (IsBlank(text)) return wrong("The number of captures is missing.");
  const auto number = WholeTextNumber(text);
  if (!number) return wrong(Quoted(text) + " is not a number of captures.");
  if (*number < 1) return wrong(Quoted(text) + " captures are too few.");
  if (*number > kMostRepeats) return wrong(Quoted(text) + " captures are too many.");
  if (*number != std::floor(*number)) return wrong(Quoted(text) + " is not a whole number.");
  return static_cast<int>(*number);
}

}  // namespace

std::variant<RepeatSettings, Error> CheckRepeat(const RepeatTexts& texts) {
  RepeatSettings settings;
  settings.mode = texts.mode;
  if (texts.mode == RepeatMode::Every) {
    const auto period = CheckSeconds(texts.seconds);
    if (const auto* error = std::get_if<Error>(&period)) return *error;
    settings.period = std::get<std::chrono::nanoseconds>(period);
  }
  if (texts.times) {
    const auto times = CheckTimes(*texts.times);
    if (const auto* error = std::get_if<Error>(&times)) return *error;
    settings.times = std::get<int>(times);
  }
  return settings;
}

std::optional<std::chrono::nanoseconds> TimerPeriod(std::int32_t recPrd) {
  const std::int32_t count = recPrd & 0xFF;
  const std::int32_t unit = recPrd >> 8 & 3;
  if (count == 0) return std::nullopt;
  if (unit == 0) return std::chrono::seconds{count};
  if (unit == 1) return std::chrono::minutes{count};
  return std::chrono::hours{count};
}

}  // namespace kestrel
