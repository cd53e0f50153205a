// Words and numbers of a plan's lines, read into their places.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <span>
#include <string>
#include <string_view>

#include "monitor/plan/plan.h"

namespace kestrel::monitor {

// Each puts what the text says into `into`, or returns what is wrong with it; "" where all is well.

[[nodiscard]] std::string ReadWord(std::string_view text, std::span<const WordCode> words,
                                   const char* unit, std::int16_t& into);
[[nodiscard]] std::string ReadWhole(std::string_view text, int least, int most, std::int16_t& into);
[[nodiscard]] std::string ReadNumber(std::string_view text, double least, double most,
                                     double& into);
// "10 s", "5 min", "1 h", "2 d"; a bare number is seconds. Whole seconds.
[[nodiscard]] std::string ReadPeriod(std::string_view text, std::chrono::seconds& into);
[[nodiscard]] std::string ReadText(std::string_view text, std::size_t longest, std::string& into);
// "usb", "usb Ezusb-1", "parallel 378", "port /dev/parport1", "simulated", "simulated bearing".
[[nodiscard]] std::string ReadRoad(std::string_view text, Road& into);
// "3 of 5".
[[nodiscard]] std::string ReadRule(std::string_view text, analysis::AlarmRule& into);
// "group 1, rigid", or three limits "2.3 4.5 7.1" in mm/s RMS.
[[nodiscard]] std::string ReadSeverity(std::string_view text,
                                       std::optional<analysis::ZoneLimits>& into);
[[nodiscard]] std::string ReadZone(std::string_view text, analysis::Zone& into);

// A text from outside as it can stand in a message: control characters and bytes that are no text
// as "?", at most 40 characters of it.
[[nodiscard]] std::string Quoted(std::string_view text);
[[nodiscard]] std::string_view Trimmed(std::string_view text);
// "10 s", "5 min", "2 h", "1 d".
[[nodiscard]] std::string PeriodText(std::chrono::seconds period);

}  // namespace kestrel::monitor
