// The levels of a time record: RMS, peak, shape, and the median of the shape over the last records.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "analysis/levels.h"
#include "display/tables.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

using analysis::NumberText;
using analysis::SignificantText;
using analysis::TimeLevels;

constexpr std::size_t kMedianOf = 9;  // records

// Of an axis of the record shown, and the median of the last records like it.
struct Shape {
  std::optional<TimeLevels> own = {};
  std::optional<TimeLevels> median = {};
  std::optional<analysis::SelfTest> test = {};
};
using Shapes = std::array<Shape, 3>;

// The last records of the same kind and option up to the one shown, newest first.
std::vector<RecordPointer> RecordsLike(const Study& study) {
  const RecordPointer& shown = study.Shown()->record;
  std::vector<RecordPointer> records;
  for (const ShelfEntry& entry : study.Records().Entries()) {
    const Record& record = *entry.record;
    if (record.kind != shown->kind || record.settings.option != shown->settings.option) continue;
    if (record.time > shown->time || !record.IsNew()) continue;
    if (records.size() < kMedianOf) records.push_back(entry.record);
  }
  return records;
}

std::optional<TimeLevels> LevelsOfAxis(const Record& record, Axis axis) {
  const auto samples = SamplesOf(record, axis);
  return samples ? analysis::LevelsOf(samples->values) : std::nullopt;
}

Shapes ShapesOf(const Study& study, const std::vector<RecordPointer>& records) {
  Shapes shapes;
  const Record& record = *study.Shown()->record;
  for (const Axis axis : kAxes) {
    const auto samples = SamplesOf(record, axis);
    if (!samples) continue;
    Shape& shape = shapes[Index(axis)];
    shape.own = analysis::LevelsOf(samples->values);
    shape.test = analysis::TestSelf(samples->values, analysis::WindowOf(study.Choice().timeWindow));
    std::vector<TimeLevels> each;
    for (const RecordPointer& one : records) {
      if (const auto levels = LevelsOfAxis(*one, axis)) each.push_back(*levels);
    }
    shape.median = analysis::MedianOf(each);
  }
  return shapes;
}

std::string Of(const std::optional<TimeLevels>& levels, double TimeLevels::*member) {
  return levels ? SignificantText((*levels).*member) : "";
}

std::string Of(const std::optional<TimeLevels>& levels, std::optional<double> TimeLevels::*member) {
  return levels && (*levels).*member ? NumberText(*((*levels).*member), 1) : "";
}

std::string NoiseText(const analysis::StatisticalBand& noise) {
  return "noise: " + NumberText(noise.low, 1) + " to " + NumberText(noise.high, 1);
}

template <typename Text>
LevelRow RowOf(const std::string& name, const Shapes& shapes, const Text& text,
               const std::string& note = "") {
  LevelRow row{.name = name, .note = note};
  std::ranges::transform(shapes, row.values.begin(), text);
  return row;
}

// The window weighs what is not steady differently: the note says by how much at most.
LevelRow SelfTestRow(const Shapes& shapes) {
  double most = 0;
  for (const Shape& shape : shapes) {
    if (shape.test && std::fabs(shape.test->differenceDb) > std::fabs(most)) {
      most = shape.test->differenceDb;
    }
  }
  return RowOf(
      "RMS of its spectrum, g", shapes,
      [](const Shape& shape) {
        return shape.test ? SignificantText(shape.test->spectrumRmsG) : "";
      },
      analysis::SignedDecibelText(most) + " dB re RMS");
}

}  // namespace

LevelTable TimeLevelsOf(const Study& study) {
  const Record& record = *study.Shown()->record;
  const auto focus = SamplesOf(record, study.Choice().focus);
  if (!focus) return {.summary = focus.Why().title};
  const std::vector<RecordPointer> records = RecordsLike(study);
  const Shapes shapes = ShapesOf(study, records);
  LevelTable table{.summary = std::to_string(record.Points()) + " samples"};
  const auto add = [&](const std::string& name, auto member, const std::string& note = "") {
    table.rows.push_back(RowOf(
        name, shapes, [member](const Shape& shape) { return Of(shape.own, member); }, note));
  };
  const auto addMedian = [&](const std::string& name, auto member, const std::string& note) {
    if (records.size() < 2) return;
    table.rows.push_back(RowOf(
        name + ", median of " + std::to_string(records.size()), shapes,
        [member](const Shape& shape) { return Of(shape.median, member); }, note));
  };
  add("RMS, g", &TimeLevels::rmsG);
  table.rows.push_back(SelfTestRow(shapes));
  add("Peak, g", &TimeLevels::peakG);
  add("Mean, g", &TimeLevels::meanG);
  add("Crest factor", &TimeLevels::crest, NoiseText(analysis::kCrestOfNoise));
  addMedian("Crest factor", &TimeLevels::crest, "");
  add("Kurtosis", &TimeLevels::kurtosis, NoiseText(analysis::kKurtosisOfNoise));
  addMedian("Kurtosis", &TimeLevels::kurtosis, "");
  return table;
}

}  // namespace kestrel::study
