// What a value of a plan may be, and what is said of one that it may not.
// SPDX-License-Identifier: MIT
#include "monitor/plan/plan_words.h"

#include <algorithm>
#include <cmath>

#include "exchange/texts.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "simulator/signal/scenario.h"

namespace kestrel::monitor {
namespace {

struct PeriodUnit {
  const char* word;
  int seconds;
};
constexpr std::array<PeriodUnit, 4> kUnits{{{"d", 86400}, {"h", 3600}, {"min", 60}, {"s", 1}}};

std::string NoneOf(std::string_view text, const std::string& choices) {
  return Quoted(text) + " is not one of " + choices;
}

bool HasControl(std::string_view text) {
  return std::ranges::any_of(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

std::string Scenarios() {
  std::string names;
  for (const std::string& name : ScenarioNames()) names += (names.empty() ? "" : ", ") + name;
  return names;
}

std::vector<std::string_view> WordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  while (!(text = Trimmed(text)).empty()) {
    const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
    words.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return words;
}

std::string ReadSimulated(std::string_view name, Road& into) {
  into.simulated = true;
  into.scenario = name;
  if (name.empty() || ScenarioNamed(name)) return {};
  return NoneOf(name, Scenarios());
}

std::string ReadUsb(std::string_view name, Road& into) {
  if (name.empty()) return {};
  if (name.size() == 7 && name.starts_with("Ezusb-") && name[6] >= '0' && name[6] <= '3') {
    into.adapter = name[6] - '0';
    return {};
  }
  return NoneOf(name, "Ezusb-0, Ezusb-1, Ezusb-2, Ezusb-3");
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMost = 40;
  std::string clean = exchange::CleanUtf8(text.substr(0, kMost));
  std::ranges::replace_if(
      clean, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
  return "\"" + clean + (text.size() > kMost ? "…" : "") + "\"";
}

std::string ReadWord(std::string_view text, std::span<const WordCode> words, const char* unit,
                     std::int16_t& into) {
  std::string choices;
  for (const auto& [word, code] : words) {
    if (text == word) {
      into = code;
      return {};
    }
    choices += (choices.empty() ? "" : ", ") + std::string(word);
  }
  return NoneOf(text, choices + unit);
}

std::string ReadNumber(std::string_view text, double least, double most, double& into) {
  const auto value = WholeTextNumber(text);
  if (value && *value >= least && *value <= most) {
    into = *value;
    return {};
  }
  return Quoted(text) + " is not a number from " + GeneralNumber(least) + " to " +
         GeneralNumber(most);
}

std::string ReadWhole(std::string_view text, int least, int most, std::int16_t& into) {
  double value = 0;
  if (ReadNumber(text, least, most, value).empty() && value == std::floor(value)) {
    into = static_cast<std::int16_t>(value);
    return {};
  }
  return Quoted(text) + " is not a whole number from " + std::to_string(least) + " to " +
         std::to_string(most);
}

std::string ReadPeriod(std::string_view text, std::chrono::seconds& into) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::string_view word = Trimmed(text.substr(digits));
  const auto* unit = std::ranges::find(kUnits, word, &PeriodUnit::word);
  const auto count =
      digits > 0 && digits <= 8 ? WholeTextNumber(text.substr(0, digits)) : std::nullopt;
  if (!count || (unit == kUnits.end() && !word.empty())) {
    return Quoted(text) + " is not a time like 10 s, 5 min, 1 h or 1 d";
  }
  const std::chrono::seconds period{static_cast<std::int64_t>(*count) *
                                    (word.empty() ? 1 : unit->seconds)};
  if (period < kShortestPeriod || period > kLongestPeriod) {
    return Quoted(text) + " is not between " + PeriodText(kShortestPeriod) + " and " +
           PeriodText(kLongestPeriod);
  }
  into = period;
  return {};
}

std::string PeriodText(std::chrono::seconds period) {
  for (const PeriodUnit& unit : kUnits) {
    if (period.count() % unit.seconds == 0) {
      return std::to_string(period.count() / unit.seconds) + " " + unit.word;
    }
  }
  return {};  // GCOVR_EXCL_LINE
}

std::string ReadText(std::string_view text, std::size_t longest, std::string& into) {
  if (HasControl(text)) return Quoted(text) + " holds a control character";
  if (!exchange::IsUtf8(text)) return Quoted(text) + " is not UTF-8 text";
  if (text.size() > longest) {
    return Quoted(text) + " has " + std::to_string(text.size()) + " bytes; at most " +
           std::to_string(longest) + " are allowed";
  }
  into = text;
  return {};
}

std::string ReadRoad(std::string_view text, Road& into) {
  const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
  const std::string_view word = text.substr(0, end);
  const std::string_view rest = Trimmed(text.substr(end));
  into = {};
  if (word == "simulated") return ReadSimulated(rest, into);
  if (word == "usb") return ReadUsb(rest, into);
  if (word == "parallel") {
    const auto address = HexadecimalWord(rest);
    if (!address) return Quoted(rest) + " is not a port address like 378";
    into.parallelAddress = static_cast<std::int16_t>(*address);
    return {};
  }
  if (word == "port") {
    if (rest.empty()) return "\"port\" needs the name of a device, like /dev/parport0";
    return ReadText(rest, kLongestName, into.portDevice);
  }
  return NoneOf(text, "usb, parallel, port, simulated");
}

std::string ReadRule(std::string_view text, analysis::AlarmRule& into) {
  constexpr int kMost = 100;
  const auto words = WordsOf(text);
  std::int16_t m = 0;
  std::int16_t n = 0;
  const bool isRule = words.size() == 3 && words[1] == "of" &&
                      ReadWhole(words[2], 1, kMost, n).empty() &&
                      ReadWhole(words[0], 1, n, m).empty();
  if (!isRule) return Quoted(text) + " is not a rule like 3 of 5, with numbers from 1 to 100";
  into.m = m;
  into.n = n;
  return {};
}

std::string ReadSeverity(std::string_view text, std::optional<analysis::ZoneLimits>& into) {
  std::string names;
  for (const analysis::SeverityTable& table : analysis::SeverityTables()) {
    for (const analysis::ZoneLimits& row : table.rows) {
      names += (names.empty() ? "\"" : ", \"") + row.name + "\"";
      if (row.name != text) continue;
      into = row;
      return {};
    }
  }
  const auto words = WordsOf(text);
  analysis::ZoneLimits own{.name = std::string(text)};
  const auto read = [](std::string_view word, double& limit) {
    return ReadNumber(word, 0, 1e6, limit).empty();
  };
  const bool areThree = words.size() == 3 && read(words[0], own.ab) && read(words[1], own.bc) &&
                        read(words[2], own.cd);
  if (!areThree || !analysis::AreLimits(own)) {
    return Quoted(text) + " is not one of " + names + ", nor three rising limits in mm/s";
  }
  into = own;
  return {};
}

std::string ReadZone(std::string_view text, analysis::Zone& into) {
  if (text.size() != 1 || text[0] < 'B' || text[0] > 'D') return NoneOf(text, "B, C, D");
  into = static_cast<analysis::Zone>(text[0] - 'A');
  return {};
}

}  // namespace kestrel::monitor
