// How the words "NAME=value" of our own ID lines are read.
// SPDX-License-Identifier: MIT
#include "exchange/uff/own.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <string_view>

#include "exchange/texts.h"
#include "exchange/uff/layout.h"
#include "numeric/number_parse.h"
#include "record/utc_time.h"

namespace kestrel::exchange {
namespace {

// The words "NAME=value" of a line of our own.
std::map<std::string, std::string, std::less<>> WordsOf(const std::string& line,
                                                        std::string_view first) {
  std::map<std::string, std::string, std::less<>> words;
  if (!line.starts_with(std::string(first) + " ")) return words;
  std::string_view rest = std::string_view(line).substr(first.size());
  while (!rest.empty()) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    const std::string_view word = rest.substr(0, rest.find(' '));
    const std::size_t sign = word.find('=');
    if (sign != std::string_view::npos) words.emplace(word.substr(0, sign), word.substr(sign + 1));
    rest.remove_prefix(word.size());
  }
  return words;
}

// Settings and exact step, where the file is one of this program's.
void TakeOwnSettings(ImportedRecord& record, const UffFunction& function) {
  const auto words = WordsOf(function.id[3], kUffOwnSettings);
  const auto word = [&words](const char* name) {
    const auto found = words.find(name);
    return found == words.end() ? std::nullopt : HexadecimalWord(found->second);
  };
  const auto number = [&words](const char* name) {
    const auto found = words.find(name);
    const auto value = found == words.end() ? std::nullopt : WholeTextNumber(found->second);
    return value && std::isfinite(*value) ? value : std::nullopt;
  };
  const auto info = word("INFO");
  const auto control = word("CTRL");
  if (info && control) record.settings = SettingsFromWords(*info, *control);
  if (const auto lsb = number("LSB"); lsb && *lsb > 0) record.lsbWeight = lsb;
  const auto scale = number("SCALE");
  if (scale && *scale >= 0 && *scale <= 3 && *scale == std::floor(*scale)) {
    record.scaledRange = static_cast<std::int16_t>(*scale);
  }
  // The columns hold six digits of the step; the line holds all, of the same number.
  const auto columns = [](double step) {
    return FortranText(step, kUffSingleColumns, kUffSingleDecimals);
  };
  const auto step = number("STEP");
  if (step && columns(*step) == columns(function.step)) record.step = step;
}

void TakeOwnConditions(ImportedRecord& record, const UffFunction& function) {
  const auto words = WordsOf(function.id[4], kUffOwnConditions);
  const auto number = [&words](const char* name, double least, double most) {
    const auto found = words.find(name);
    const auto value = found == words.end() ? std::nullopt : WholeTextNumber(found->second);
    return value && *value >= least && *value <= most ? value : std::nullopt;
  };
  if (const auto supply = number("SUPPLY", -1e6, 1e6)) {
    record.supplyV = static_cast<float>(*supply);
  }
  if (const auto temperature = number("TEMP", -1e6, 1e6)) {
    record.temperatureC = static_cast<float>(*temperature);
  }
  if (const auto count = number("COUNT", 0, 0x7FFFFFFF)) {
    record.recordCount = static_cast<std::int32_t>(*count);
  }
  const auto status = words.find("STATUS");
  if (status != words.end()) {
    if (const auto word = HexadecimalWord(status->second)) record.status = *word;
  }
}

// "2024-03-14T08:26:53.250Z" at the end of ID line 3, which only this program writes there.
void TakeTime(ImportedRecord& record, const std::string& line) {
  constexpr std::size_t kMoment = 24;  // characters
  record.timeText = line == "NONE" ? "" : line;
  const std::size_t at = line.rfind("  ");
  if (at == std::string::npos || line.size() != at + 2 + kMoment || line.back() != 'Z') return;
  record.time = UtcFrom(line.substr(at + 2));
}

}  // namespace

void TakeOwnLines(ImportedRecord& record, const UffFunction& function) {
  TakeTime(record, function.id[2]);
  TakeOwnSettings(record, function);
  TakeOwnConditions(record, function);
}

std::optional<OwnPart> OwnPartOf(const UffFunction& function) {
  const auto words = WordsOf(function.id[4], kUffOwnConditions);
  const auto found = words.find("REC");
  if (found == words.end()) return std::nullopt;
  const std::string_view text = found->second;
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const auto number = WholeTextNumber(text.substr(0, slash));
  const auto count = WholeTextNumber(text.substr(slash + 1));
  constexpr double kMost = 1e9;
  if (!number || !count || *number < 1 || *count < *number || *count > kMost) return std::nullopt;
  return OwnPart{static_cast<std::int64_t>(*number), static_cast<std::int64_t>(*count)};
}

}  // namespace kestrel::exchange
