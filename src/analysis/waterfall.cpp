// The ring of rows.
// SPDX-License-Identifier: MIT
#include "analysis/waterfall.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "record/frequency.h"

namespace kestrel::analysis {
namespace {

std::uint16_t Word(double raw) {
  if (!(raw > 0)) return 0;  // nor what is no number
  return static_cast<std::uint16_t>(std::min(std::round(raw), 65535.0));
}

bool IsCode(int code) {
  return code >= 0 && code < 4;
}

double Scaled(std::uint16_t word, double gPerWord, std::size_t bin, MagnitudeMeaning meaning) {
  const bool rms = meaning == MagnitudeMeaning::Rms && bin > 0;
  return word * gPerWord * (rms ? std::numbers::sqrt2 : 1.0);
}

}  // namespace

Waterfall::Waterfall(std::size_t mostRows) : mostRows_(std::max<std::size_t>(mostRows, 1)) {}

const Waterfall::Row& Waterfall::At(std::size_t row) const {
  return rows_[(oldest_ + row) % rows_.size()];
}

void Waterfall::Put(Row row) {
  ++taken_;
  if (rows_.size() < mostRows_) {
    rows_.push_back(std::move(row));
    return;
  }
  rows_[oldest_] = std::move(row);
  oldest_ = (oldest_ + 1) % mostRows_;
}

std::optional<std::string> Waterfall::Add(const Record& record, bool ownRange) {
  const RecordSettings& settings = record.settings;
  const int range = ownRange ? settings.range : record.scaledRange;
  if (record.kind != RecordKind::Spectrum) return "a time record has no row";
  if (!IsCode(settings.option)) return "its sample-rate option is not valid";
  if (!IsCode(range)) return "its range is not valid";
  const double gPerWord = StepOf(record, ownRange);
  if (!std::isfinite(gPerWord)) return "its scale is not valid";
  Row row{.time = record.time,
          .gPerWord = gPerWord,
          .averages = settings.averages,
          .option = static_cast<std::uint8_t>(settings.option),
          .window = static_cast<std::uint8_t>(settings.window),
          .range = static_cast<std::uint8_t>(range),
          .gapBefore = std::exchange(gap_, {})};
  for (const Axis axis : kAxes) {
    const auto raw = record.Of(axis).raw.First(kSpectrumBins);
    std::ranges::transform(raw, row.words[Index(axis)].begin(), Word);
  }
  Put(std::move(row));
  return std::nullopt;
}

void Waterfall::AddGap(std::string reason) {
  if (!rows_.empty() && gap_.empty()) gap_ = std::move(reason);
}

void Waterfall::Clear() {
  rows_.clear();
  oldest_ = 0;
  gap_.clear();
}

std::chrono::system_clock::time_point Waterfall::TimeOf(std::size_t row) const {
  return At(row).time;
}

const std::string& Waterfall::GapBefore(std::size_t row) const {
  return At(row).gapBefore;
}

Spectrum Waterfall::SpectrumOf(std::size_t row, Axis axis, MagnitudeMeaning meaning) const {
  const Row& kept = At(row);
  const bool rms = meaning == MagnitudeMeaning::Rms;
  Spectrum spectrum{.binWidthHz = BinWidth(kept.option),
                    .window = WindowOfCode(kept.window),
                    .option = kept.option,
                    .range = kept.range,
                    .averages = std::max<int>(kept.averages, 1),
                    .stepG = kept.gPerWord * (rms ? std::numbers::sqrt2 : 1.0),
                    .axis = axis,
                    .meaning = meaning,
                    .time = kept.time};
  const auto& words = kept.words[Index(axis)];
  for (std::size_t bin = 0; bin < words.size(); ++bin) {
    spectrum.peakG.push_back(Scaled(words[bin], kept.gPerWord, bin, meaning));
  }
  return spectrum;
}

Record Waterfall::RecordOf(std::size_t row) const {
  const Row& kept = At(row);
  Record record;
  record.kind = RecordKind::Spectrum;
  record.time = kept.time;
  record.lsbWeight = kept.gPerWord;
  record.scaledRange = kept.range;
  record.settings.range = kept.range;
  record.settings.option = kept.option;
  record.settings.window = kept.window;
  record.settings.averages = kept.averages;
  for (const Axis axis : kAxes) {
    const auto& words = kept.words[Index(axis)];
    for (std::size_t bin = 0; bin < words.size(); ++bin) {
      record.Of(axis).raw(static_cast<int>(bin)) = words[bin];
      record.Of(axis).data(static_cast<int>(bin)) = words[bin] * kept.gPerWord;
    }
  }
  return record;
}

std::vector<TimedLevel> Waterfall::ColumnAt(double hz, Axis axis, MagnitudeMeaning meaning) const {
  std::vector<TimedLevel> levels;
  for (std::size_t i = 0; i < Rows(); ++i) {
    const Row& row = At(i);
    const double place = std::round(hz / BinWidth(row.option));
    if (!(place >= 0) || place >= static_cast<double>(kSpectrumBins)) continue;
    const auto bin = static_cast<std::size_t>(place);
    levels.push_back(
        {row.time, Scaled(row.words[Index(axis)][bin], row.gPerWord, bin, meaning), row.gapBefore});
  }
  return levels;
}

std::size_t Waterfall::Bytes() const {
  std::size_t texts = 0;
  for (const Row& row : rows_) texts += row.gapBefore.capacity();
  return rows_.capacity() * sizeof(Row) + texts;
}

}  // namespace kestrel::analysis
