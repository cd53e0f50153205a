// How records become points of series.
// SPDX-License-Identifier: MIT
#include "archive/trend.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <span>
#include <utility>

#include "analysis/levels.h"
#include "analysis/peaks.h"
#include "archive/record_row.h"
#include "numeric/number_format.h"

namespace kestrel::archive {
namespace {

constexpr std::int64_t kAskedEvery = 64;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// The column that has it.
std::string ColumnOf(TrendOf of, Axis axis) {
  const char letter = static_cast<char>(Letter(axis) - 'A' + 'a');
  switch (of) {
    case TrendOf::Rms:
      return std::string("r.rms_") + letter;
    case TrendOf::Peak:
      return std::string("r.top_") + letter;
    case TrendOf::Temperature:
      return "r.temperature_c";
    case TrendOf::Supply:
      return "r.supply_v";
    default:
      return "cast(null as double precision)";  // worked out
  }
}

// A row on its way into a series.
struct Placed {
  LevelPoint point;
  RecordKind kind = RecordKind::Spectrum;
  RecordSettings settings;

  [[nodiscard]] bool IsKnown() const {
    return std::ranges::any_of(point.value, [](double value) { return !std::isnan(value); });
  }
};

class Gathering {
 public:
  explicit Gathering(TrendOf of) : of_(of) { levels_.unit = UnitOf(of); }

  void Add(const Placed& placed) { SeriesOf(placed).points.push_back(placed.point); }
  void Refuse(std::int64_t id, const std::string& why) {
    if (levels_.refused.empty()) levels_.refusal = why;
    levels_.refused.push_back(id);
  }
  Levels Take() {
    std::ranges::stable_sort(levels_.series, std::greater{},
                             [](const LevelSeries& series) { return series.points.size(); });
    return std::move(levels_);
  }

 private:
  // Conditions of the sensor do not depend on how it recorded.
  LevelSeries& SeriesOf(const Placed& placed) {
    LevelSeries wanted;
    if (IsOfAxis(of_)) {
      wanted.kind = placed.kind;
      wanted.option = placed.settings.option;
      wanted.window = placed.kind == RecordKind::Time ? 0 : placed.settings.window;
    }
    const auto found = std::ranges::find_if(levels_.series, [&](const LevelSeries& series) {
      return series.kind == wanted.kind && series.option == wanted.option &&
             series.window == wanted.window;
    });
    return found == levels_.series.end() ? levels_.series.emplace_back(wanted) : *found;
  }

  TrendOf of_;
  Levels levels_;
};

Placed PlacedFrom(database::Row row, std::span<const Axis> axes) {
  Placed placed;
  placed.point.id = database::Integer(row[0]);
  placed.point.time = TimeOf(database::Integer(row[1]));
  placed.kind = database::Integer(row[2]) == 1 ? RecordKind::Time : RecordKind::Spectrum;
  placed.settings = SettingsFromWords(static_cast<std::int32_t>(database::Integer(row[3])), 0);
  placed.point.range = placed.settings.range;
  for (std::size_t i = 0; i < 3; ++i) {
    placed.point.alarms[i] = static_cast<std::int32_t>(database::Integer(row[4 + i]));
  }
  placed.point.value.fill(kNone);
  for (std::size_t i = 0; i < axes.size(); ++i) {
    if (!database::IsNull(row[7 + i])) {
      placed.point.value[Index(axes[i])] = database::Real(row[7 + i]);
    }
  }
  return placed;
}

// The oldest first.
void ForEachRow(Archive& archive, const Filter& filter, TrendOf of, std::span<const Axis> axes,
                const std::function<void(const Placed&)>& take) {
  const Condition condition = ConditionOf(filter, archive.Version());
  std::string columns;
  for (const Axis axis : axes) columns += ", " + ColumnOf(of, axis);
  archive.Connection().Run(
      "select r.id, r.taken, r.kind, r.rec_info, r.alarm_x, r.alarm_y, r.alarm_z" + columns +
          " from record r join source s on s.id = r.source where " + condition.sql +
          " order by r.taken, r.id",
      condition.values, [&](database::Row row) { take(PlacedFrom(row, axes)); });
}

// A value, or why there is none.
using Worked = std::pair<double, std::string>;

Worked LevelOfBand(const analysis::Spectrum& spectrum, const TrendChoice& choice) {
  const auto level = analysis::LevelBetween(spectrum, choice.fromHz, choice.toHz);
  if (!level) return {kNone, AsLine(level.Why())};
  if (!level->whole) return {kNone, "the spectrum does not hold the whole band"};
  return {choice.of == TrendOf::BandRms ? level->rmsG : level->peakG, {}};
}

Worked LargestNear(const analysis::Spectrum& spectrum, const TrendChoice& choice) {
  const double low = choice.nearHz - choice.withinHz;
  const double high = choice.nearHz + choice.withinHz;
  const auto held = analysis::LevelBetween(spectrum, low, high);
  if (!held) return {kNone, AsLine(held.Why())};
  if (!held->whole) return {kNone, "the spectrum does not hold all around that frequency"};
  const auto peaks = analysis::FindPeaksBetween(spectrum, low, high);
  if (!peaks.empty()) return {peaks.front().line.peakG, {}};
  return {kNone, "no peak stands out of the noise within " + GeneralNumber(choice.withinHz) +
                     " Hz of " + GeneralNumber(choice.nearHz) + " Hz"};
}

// Fills in the levels of these axes; why not where the record carries none of them.
std::string WorkOut(Archive& archive, const TrendChoice& choice, std::span<const Axis> axes,
                    Placed& placed) {
  if (placed.kind == RecordKind::Time) return "a time record has no bands";
  const auto kept = archive.Get(placed.point.id);
  if (!kept) return "the record is not there any more";
  std::string why;
  for (const Axis axis : axes) {
    const auto spectrum = analysis::SpectrumOf(kept->record, axis, {.ownRange = true});
    const Worked worked = !spectrum                        ? Worked{kNone, AsLine(spectrum.Why())}
                          : choice.of == TrendOf::PeakNear ? LargestNear(*spectrum, choice)
                                                           : LevelOfBand(*spectrum, choice);
    placed.point.value[Index(axis)] = worked.first;
    if (why.empty()) why = worked.second;
  }
  return why;
}

// What is kept with the record: one question, which cannot be ended in the middle.
Levels Kept(Archive& archive, const Filter& filter, TrendOf of, std::span<const Axis> axes,
            const GoOn& goOn) {
  Gathering gathering(of);
  std::int64_t done = 0;
  ForEachRow(archive, filter, of, axes, [&](const Placed& placed) {
    ++done;
    placed.IsKnown() ? gathering.Add(placed)
                     : gathering.Refuse(placed.point.id, "the record cannot carry this level");
  });
  if (!goOn(done, done)) return {.whole = false};
  return gathering.Take();
}

Levels LevelsOf(Archive& archive, const Filter& filter, const TrendChoice& choice,
                std::span<const Axis> axes, const GoOn& goOn) {
  if (!IsWorkedOut(choice.of)) return Kept(archive, filter, choice.of, axes, goOn);
  std::vector<Placed> rows;
  ForEachRow(archive, filter, choice.of, axes,
             [&](const Placed& placed) { rows.push_back(placed); });
  const auto all = static_cast<std::int64_t>(rows.size());
  Gathering gathering(choice.of);
  std::int64_t done = 0;
  for (Placed& placed : rows) {
    if (done++ % kAskedEvery == 0 && !goOn(done - 1, all)) return {.whole = false};
    const std::string why = WorkOut(archive, choice, axes, placed);
    placed.IsKnown() ? gathering.Add(placed) : gathering.Refuse(placed.point.id, why);
  }
  return gathering.Take();
}

}  // namespace

bool IsOfAxis(TrendOf of) {
  return of != TrendOf::Temperature && of != TrendOf::Supply;
}

bool IsWorkedOut(TrendOf of) {
  return of == TrendOf::BandRms || of == TrendOf::BandPeak || of == TrendOf::PeakNear;
}

std::string UnitOf(TrendOf of) {
  switch (of) {
    case TrendOf::Rms:
    case TrendOf::BandRms:
      return "g RMS";
    case TrendOf::Temperature:
      return "°C";
    case TrendOf::Supply:
      return "V";
    default:
      return "g peak";
  }
}

Trend TrendFor(Archive& archive, const Filter& filter, const TrendChoice& choice,
               const GoOn& goOn) {
  const Axis axis = IsOfAxis(choice.of) ? choice.axis : Axis::X;
  Levels levels = LevelsOf(archive, filter, choice, std::array{axis}, goOn);
  Trend trend{.unit = std::move(levels.unit),
              .refused = static_cast<std::int64_t>(levels.refused.size()),
              .refusal = std::move(levels.refusal),
              .whole = levels.whole};
  for (const LevelSeries& series : levels.series) {
    TrendSeries& told = trend.series.emplace_back(
        TrendSeries{.kind = series.kind, .option = series.option, .window = series.window});
    told.points.reserve(series.points.size());
    for (const LevelPoint& point : series.points) {
      const bool alarm = std::ranges::any_of(point.alarms, [](int word) { return word != 0; });
      told.points.push_back({point.id, point.time, point.value[Index(axis)], alarm});
    }
  }
  return trend;
}

Levels LevelsOver(Archive& archive, const Filter& filter, const TrendChoice& choice,
                  const GoOn& goOn) {
  if (!IsOfAxis(choice.of)) return LevelsOf(archive, filter, choice, std::array{Axis::X}, goOn);
  return LevelsOf(archive, filter, choice, kAxes, goOn);
}

}  // namespace kestrel::archive
