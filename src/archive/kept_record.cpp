// Tags, names and levels of kept records.
// SPDX-License-Identifier: MIT
#include "archive/kept_record.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <random>

#include "analysis/levels.h"
#include "analysis/spectrum.h"

namespace kestrel::archive {
namespace {

std::string Trimmed(std::string text) {
  std::ranges::replace(text, '\n', ' ');
  std::ranges::replace(text, '\r', ' ');
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<AxisLevels> TimeLevelsOf(const Record& record, Axis axis) {
  const auto levels = analysis::LevelsOf(analysis::ValuesInG(record, axis, true));
  if (!levels) return std::nullopt;
  return AxisLevels{levels->rmsG, levels->peakG};
}

std::optional<AxisLevels> SpectrumLevelsOf(const Record& record, Axis axis) {
  const auto spectrum = analysis::SpectrumOf(record, axis, {.ownRange = true});
  if (!spectrum) return std::nullopt;
  const auto level = analysis::OverallLevel(*spectrum);
  if (!level) return std::nullopt;
  return AxisLevels{level->rmsG, level->peakG};
}

}  // namespace

std::vector<std::string> CleanTags(std::vector<std::string> tags) {
  for (std::string& tag : tags) tag = Trimmed(std::move(tag));
  std::erase(tags, "");
  std::ranges::sort(tags);
  tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
  return tags;
}

Uid NewUid() {
  std::random_device random;
  Uid uid{};
  for (std::size_t i = 0; i < uid.size(); i += sizeof(std::uint32_t)) {
    const std::uint32_t word = random();
    std::memcpy(uid.data() + i, &word, sizeof word);
  }
  return uid;
}

std::string TextOf(const Uid& uid) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : uid) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

std::optional<Uid> UidFrom(const std::string& text) {
  Uid uid{};
  if (text.size() != 2 * uid.size()) return std::nullopt;
  for (std::size_t i = 0; i < uid.size(); ++i) {
    const char* digits = text.data() + 2 * i;
    const auto [end, fault] = std::from_chars(digits, digits + 2, uid[i], 16);
    if (fault != std::errc{} || end != digits + 2) return std::nullopt;
  }
  return uid;
}

KeptLevels LevelsFor(const Record& record) {
  KeptLevels levels;
  for (const Axis axis : kAxes) {
    levels[Index(axis)] = record.kind == RecordKind::Time ? TimeLevelsOf(record, axis)
                                                          : SpectrumLevelsOf(record, axis);
  }
  return levels;
}

}  // namespace kestrel::archive
