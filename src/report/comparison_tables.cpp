// Levels and peaks of several records side by side, and how peaks find their like.
// SPDX-License-Identifier: MIT
#include "report/comparison_tables.h"

#include <algorithm>
#include <cmath>

#include "analysis/levels.h"
#include "analysis/trace_set.h"
#include "display/scene.h"
#include "display/tables.h"
#include "display/track.h"
#include "numeric/number_texts.h"

namespace kestrel::report {
namespace {

using analysis::Line;
using analysis::LineValue;
using study::Measured;
using study::MeasuredSpectrum;
using study::StudyChoice;

constexpr analysis::QuantityChoice kPeakG{.quantity = analysis::Quantity::Acceleration,
                                          .amplitude = analysis::Amplitude::Peak};

const MeasuredSpectrum* SpectrumOf(const Measured& record, Axis axis) {
  const auto& told = record.Of(axis);
  return told ? &*told : nullptr;
}

// What each record has of one line; null where it shows none.
struct LineOfRecords {
  double hz = 0;
  std::vector<const analysis::Peak*> of{};
};

using Peaks = std::vector<std::vector<analysis::Peak>>;

Peaks PeaksOf(const Compared& records, Axis axis, std::size_t most) {
  Peaks peaks;
  for (const Measured& record : records) {
    const MeasuredSpectrum* measured = SpectrumOf(record, axis);
    peaks.push_back(measured != nullptr ? ToldPeaks(*measured) : std::vector<analysis::Peak>());
    peaks.back().resize(std::min(peaks.back().size(), most));
  }
  return peaks;
}

// Half a bin either side of both.
double Within(const Compared& records, std::size_t one, std::size_t other, Axis axis) {
  const auto width = [&](std::size_t record) {
    const MeasuredSpectrum* measured = SpectrumOf(records[record], axis);
    return measured != nullptr ? measured->spectrum.binWidthHz : 0;
  };
  return (width(one) + width(other)) / 2;
}

// Each peak belongs to the nearest line of the records before that has none of its record yet;
// otherwise it begins one.
std::vector<LineOfRecords> LinesOf(const Compared& records, const Peaks& peaks, Axis axis) {
  std::vector<LineOfRecords> lines;
  for (std::size_t record = 0; record < records.size(); ++record) {
    for (const analysis::Peak& peak : peaks[record]) {
      LineOfRecords* nearest = nullptr;
      for (LineOfRecords& line : lines) {
        const double off = std::abs(line.hz - peak.line.hz);
        if (line.of[record] != nullptr || off > Within(records, 0, record, axis)) continue;
        if (nearest == nullptr || off < std::abs(nearest->hz - peak.line.hz)) nearest = &line;
      }
      if (nearest == nullptr) {
        lines.push_back({peak.line.hz, std::vector<const analysis::Peak*>(records.size())});
        nearest = &lines.back();
      }
      nearest->of[record] = &peak;
    }
  }
  std::ranges::stable_sort(lines, {}, &LineOfRecords::hz);
  return lines;
}

std::string ValueText(const LineValue& value, const StudyChoice& choice) {
  if (!value.bound) return study::AmplitudeText(choice.quantity, value.value);
  const auto text = analysis::WithBound(value.value, *value.bound);
  return text.bound.empty() ? text.value : text.value + " " + text.bound;
}

// The largest error that the bounds of two amplitudes leave of their ratio; none where one has no
// bound, or may be 0.
std::optional<double> BoundInDb(const LineValue& value, const LineValue& first) {
  if (!value.bound || !first.bound) return std::nullopt;
  const double least = (value.value - *value.bound) / (first.value + *first.bound);
  const double most = (value.value + *value.bound) / (first.value - *first.bound);
  if (!(least > 0) || !(most > 0) || !std::isfinite(most)) return std::nullopt;
  const double ratio = value.value / first.value;
  return 20 * std::max(std::log10(most / ratio), std::log10(ratio / least));
}

std::string DifferenceText(const analysis::Spectrum& spectrum, const Line& line,
                           const analysis::Spectrum& firstSpectrum, const Line& first) {
  const LineValue value = analysis::ValueOf(spectrum, kPeakG, line);
  const LineValue firstValue = analysis::ValueOf(firstSpectrum, kPeakG, first);
  if (!(value.value > 0) || !(firstValue.value > 0)) return "";
  const double db = 20 * std::log10(value.value / firstValue.value);
  const auto bound = BoundInDb(value, firstValue);
  if (!bound || line.unresolved || first.unresolved) return "unresolved";
  const auto text = analysis::WithBound(db, *bound);
  const bool isMore = db > 0 && text.value.find_first_of("123456789") != std::string::npos;
  return (isMore ? "+" : "") + text.value + (text.bound.empty() ? "" : " " + text.bound);
}

void AddHeads(Table& table, const Compared& records, const std::string& unit) {
  for (std::size_t record = 0; record < records.size(); ++record) {
    table.columns.push_back({.head = LetterOf(record), .unit = unit, .isNumber = true});
  }
  for (std::size_t record = 1; record < records.size(); ++record) {
    if (WhyNotAgainstFirst(records, record)) continue;
    table.columns.push_back({.head = LetterOf(record) + " over A", .unit = "dB", .isNumber = true});
  }
}

std::vector<std::string> PeakRow(const Compared& records, const StudyChoice& choice, Axis axis,
                                 const LineOfRecords& line) {
  const auto shows = [&](std::size_t record) { return line.of[record] != nullptr; };
  const std::size_t teller =
      shows(0) ? 0
               : static_cast<std::size_t>(
                     std::ranges::find_if(
                         line.of, [](const analysis::Peak* peak) { return peak != nullptr; }) -
                     line.of.begin());
  const Line& told = line.of[teller]->line;
  const analysis::Horizontal across =
      study::HorizontalOf(choice, SpectrumOf(records[teller], axis)->spectrum.binWidthHz);
  const auto hz = analysis::WithBound(analysis::FromHertz(across, told.hz),
                                      analysis::FromHertz(across, told.hzBound));
  std::vector<std::string> row{hz.bound.empty() ? hz.value : hz.value + " " + hz.bound};
  for (std::size_t record = 0; record < records.size(); ++record) {
    if (!shows(record)) {
      row.emplace_back(analysis::kNoNumber);
      continue;
    }
    const analysis::Spectrum& spectrum = SpectrumOf(records[record], axis)->spectrum;
    row.push_back(
        ValueText(analysis::ValueOf(spectrum, choice.quantity, line.of[record]->line), choice));
  }
  for (std::size_t record = 1; record < records.size(); ++record) {
    if (WhyNotAgainstFirst(records, record)) continue;
    row.push_back(shows(0) && shows(record)
                      ? DifferenceText(SpectrumOf(records[record], axis)->spectrum,
                                       line.of[record]->line,
                                       SpectrumOf(records[0], axis)->spectrum, line.of[0]->line)
                      : "");
  }
  return row;
}

}  // namespace

std::string LetterOf(std::size_t record) {
  return std::string(1, static_cast<char>('A' + record));
}

std::optional<std::string> WhyNotAgainstFirst(const Compared& records, std::size_t record) {
  if (records[record].record->kind != records[0].record->kind) {
    return records[record].record->kind == RecordKind::Time
               ? "it is a time record, A a spectrum of the sensor"
               : "it is a spectrum of the sensor, A a time record";
  }
  return study::WhyNotTogether(records[0], records[record]);
}

Table LevelDifferences(const Compared& records, const StudyChoice& choice) {
  Table table{.columns = {{.head = "Axis"}}};
  AddHeads(table, records, "g RMS");
  for (const Axis axis : study::ShownAxes(choice)) {
    std::vector<std::string> row{std::string(1, Letter(axis))};
    std::vector<std::optional<analysis::BandLevel>> levels;
    for (const Measured& record : records) {
      const MeasuredSpectrum* measured = SpectrumOf(record, axis);
      levels.emplace_back();
      if (measured != nullptr) {
        if (const auto level = analysis::OverallLevel(measured->spectrum)) levels.back() = *level;
      }
      row.push_back(levels.back() ? study::LevelText(measured->spectrum, *levels.back())
                                  : analysis::kNoNumber);
    }
    for (std::size_t record = 1; record < records.size(); ++record) {
      if (WhyNotAgainstFirst(records, record)) continue;
      row.push_back(levels[0] && levels[record]
                        ? study::LevelOverText(SpectrumOf(records[record], axis)->spectrum,
                                               *levels[record],
                                               SpectrumOf(records[0], axis)->spectrum, *levels[0])
                        : "");
    }
    table.rows.push_back(std::move(row));
  }
  return table;
}

Table PeakDifferences(const Compared& records, const StudyChoice& choice, Axis axis,
                      std::size_t most) {
  const MeasuredSpectrum* first = SpectrumOf(records[0], axis);
  const analysis::Horizontal across =
      study::HorizontalOf(choice, first != nullptr ? first->spectrum.binWidthHz : 0);
  Table table{
      .caption = std::string("Axis ") + Letter(axis),
      .columns = {{.head = "Frequency", .unit = analysis::UnitOf(across), .isNumber = true}},
      .instead = std::string("Axis ") + Letter(axis) + ": no peak stands out of the noise."};
  AddHeads(table, records, analysis::UnitOf(choice.quantity));
  const Peaks peaks = PeaksOf(records, axis, most);
  for (const LineOfRecords& line : LinesOf(records, peaks, axis)) {
    table.rows.push_back(PeakRow(records, choice, axis, line));
  }
  return table;
}

}  // namespace kestrel::report
