// How that text is written and read.
// SPDX-License-Identifier: MIT
#include "exchange/wav/text.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "exchange/facts.h"
#include "exchange/texts.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "record/frequency.h"

namespace kestrel::exchange {
namespace {

constexpr std::string_view kFirstLine = "kestrel time record 1";
constexpr double kWords = 32768;

using Lines = std::map<std::string, std::string, std::less<>>;

std::string Line(const std::string& name, const std::string& value) {
  return value.empty() ? "" : name + ": " + value + "\n";
}

struct Tell {
  std::string operator()(std::monostate /*unknown*/) const { return ""; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(float value) const { return ExactText(value); }
  std::string operator()(double value) const { return ExactText(value); }
  std::string operator()(const std::string& text) const { return OneLine(CleanUtf8(text)); }
  std::string operator()(const std::vector<std::string>& texts) const {
    std::string line;
    for (const std::string& text : texts) line += (line.empty() ? "" : "; ") + (*this)(text);
    return line;
  }
};

// Those that a user has typed and that may be long.
bool IsTyped(const Fact& fact) {
  constexpr std::array<std::string_view, 6> kTyped{"machine", "point", "orientation",
                                                   "sensor",  "tags",  "note"};
  return std::ranges::find(kTyped, fact.name) != kTyped.end();
}

Lines LinesOf(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    const std::size_t colon = line.find(": ");
    if (colon != std::string_view::npos) {
      lines.emplace(line.substr(0, colon), line.substr(colon + 2));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::optional<double> NumberAt(const Lines& lines, std::string_view name) {
  const auto found = lines.find(name);
  if (found == lines.end()) return std::nullopt;
  const auto number = WholeTextNumber(found->second);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

// A number without a fraction, `least` to `most`.
std::optional<std::int32_t> WholeAt(const Lines& lines, std::string_view name, double least,
                                    double most) {
  const auto number = NumberAt(lines, name);
  if (!number || *number != std::floor(*number) || *number < least || *number > most) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(*number);
}

}  // namespace

double WavScale(const Record& record) {
  double largest = 0;
  for (const Axis axis : kAxes) {
    for (const double value : record.Values(axis)) largest = std::max(largest, std::abs(value));
  }
  const double words = kWords * record.lsbWeight;
  if (words >= largest && words > 0 && std::isfinite(words)) return words;
  return largest > 0 ? std::exp2(std::ceil(std::log2(largest))) : 1;
}

std::string WavText(const NotedRecord& noted) {
  const Record& record = noted.record;
  std::string text = std::string(kFirstLine) + "\n";
  text += Line("g_per_unit", ExactText(WavScale(record)));
  text += Line("true_rate_hz", ExactText(SampleFrequency(record.settings.option)));
  text += "channels: X, Y, Z\n";
  std::string typed;
  for (const Fact& fact : FactsOf(noted)) {
    if (fact.name == "unit" || fact.name == "notices") continue;
    (IsTyped(fact) ? typed : text) += Line(fact.name, std::visit(Tell{}, fact.value));
  }
  return Shortened(text + typed, kWavText);
}

std::optional<WavTold> WavToldBy(std::string_view text) {
  if (!text.starts_with(kFirstLine)) return std::nullopt;
  const Lines lines = LinesOf(text);
  const auto scale = NumberAt(lines, "g_per_unit");
  const auto rate = NumberAt(lines, "true_rate_hz");
  if (!scale || !rate || *scale <= 0 || *rate <= 0) return std::nullopt;
  WavTold told{.gPerUnit = *scale, .rateHz = *rate};
  const auto info = WholeAt(lines, "rec_info", 0, 0xFFFF);
  const auto control = WholeAt(lines, "rec_ctrl", 0, 0xFFFF);
  if (info && control) told.settings = SettingsFromWords(*info, *control);
  if (const auto lsb = NumberAt(lines, "lsb_weight_g"); lsb && *lsb > 0) told.lsbWeight = lsb;
  if (const auto range = WholeAt(lines, "scaled_range_code", 0, 3)) {
    told.scaledRange = static_cast<std::int16_t>(*range);
  }
  return told;
}

}  // namespace kestrel::exchange
