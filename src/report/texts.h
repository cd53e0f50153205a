// Texts as a report prints them: moments in UTC, lines without control characters.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel::report {

// "2026-03-14 08:26:53 UTC", rounded down to seconds.
[[nodiscard]] std::string MomentText(std::chrono::system_clock::time_point moment);

// A user's text in one line: ends of lines, tabs and other control characters are blanks.
[[nodiscard]] std::string OneLine(std::string_view text);

// A user's text as paragraphs, one for each of its lines.
[[nodiscard]] std::vector<std::string> ParagraphsOf(std::string_view text);

// "a", "a and b", "a, b and c".
[[nodiscard]] std::string Listed(const std::vector<std::string>& texts);

}  // namespace kestrel::report
