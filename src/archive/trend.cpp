// How records become points of series.
// SPDX-License-Identifier: MIT
#include "archive/trend.h"

#include <algorithm>
#include <optional>

#include "analysis/levels.h"
#include "archive/record_row.h"

namespace kestrel::archive {
namespace {

constexpr std::int64_t kAskedEvery = 64;

bool IsOfBand(TrendOf of) {
  return of == TrendOf::BandRms || of == TrendOf::BandPeak;
}

// The column that has it.
std::string ColumnOf(const TrendChoice& choice) {
  const char axis = static_cast<char>(Letter(choice.axis) - 'A' + 'a');
  switch (choice.of) {
    case TrendOf::Rms:
      return std::string("r.rms_") + axis;
    case TrendOf::Peak:
      return std::string("r.top_") + axis;
    case TrendOf::Temperature:
      return "r.temperature_c";
    case TrendOf::Supply:
      return "r.supply_v";
    default:
      return "null";  // worked out
  }
}

const char* UnitOf(TrendOf of) {
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

// A row on its way into a series.
struct Placed {
  TrendPoint point;
  RecordKind kind = RecordKind::Spectrum;
  RecordSettings settings;
  bool known = false;  // the value
};

class Gathering {
 public:
  explicit Gathering(const TrendChoice& choice) : choice_(choice) {
    trend_.unit = UnitOf(choice.of);
  }

  void Add(const Placed& placed) { SeriesOf(placed).points.push_back(placed.point); }
  void Refuse(const std::string& why) {
    if (trend_.refused++ == 0) trend_.refusal = why;
  }
  Trend Take() {
    std::ranges::stable_sort(trend_.series, std::greater{},
                             [](const TrendSeries& series) { return series.points.size(); });
    return std::move(trend_);
  }

 private:
  // Conditions of the sensor do not depend on how it recorded.
  TrendSeries& SeriesOf(const Placed& placed) {
    TrendSeries wanted;
    if (choice_.of != TrendOf::Temperature && choice_.of != TrendOf::Supply) {
      wanted.kind = placed.kind;
      wanted.option = placed.settings.option;
      wanted.window = placed.kind == RecordKind::Time ? 0 : placed.settings.window;
    }
    const auto found = std::ranges::find_if(trend_.series, [&](const TrendSeries& series) {
      return series.kind == wanted.kind && series.option == wanted.option &&
             series.window == wanted.window;
    });
    return found == trend_.series.end() ? trend_.series.emplace_back(wanted) : *found;
  }

  TrendChoice choice_;
  Trend trend_;
};

std::vector<Placed> Rows(Archive& archive, const Filter& filter, const TrendChoice& choice) {
  const Condition condition = ConditionOf(filter);
  std::vector<Placed> rows;
  archive.Connection().Run(
      "select r.id, r.taken, r.kind, r.rec_info, case when r.alarm_x <> 0 or r.alarm_y <> 0 or "
      "r.alarm_z <> 0 then 1 else 0 end, " +
          (IsOfBand(choice.of) ? "cast(null as double precision)" : ColumnOf(choice)) +
          " from record r join source s on s.id = r.source where " + condition.sql +
          " order by r.taken, r.id",
      condition.values, [&](database::Row row) {
        Placed& placed = rows.emplace_back();
        placed.point.id = database::Integer(row[0]);
        placed.point.time = TimeOf(database::Integer(row[1]));
        placed.kind = database::Integer(row[2]) == 1 ? RecordKind::Time : RecordKind::Spectrum;
        placed.settings =
            SettingsFromWords(static_cast<std::int32_t>(database::Integer(row[3])), 0);
        placed.point.alarm = database::Integer(row[4]) != 0;
        placed.known = !database::IsNull(row[5]);
        if (placed.known) placed.point.value = database::Real(row[5]);
      });
  return rows;
}

// Fills in the level of a band; why not where the record cannot carry it.
std::string WorkOut(Archive& archive, const TrendChoice& choice, Placed& placed) {
  if (placed.kind == RecordKind::Time) return "a time record has no bands";
  const auto kept = archive.Get(placed.point.id);
  if (!kept) return "the record is not there any more";
  const auto spectrum = analysis::SpectrumOf(kept->record, choice.axis, {.ownRange = true});
  if (!spectrum) return AsLine(spectrum.Why());
  const auto level = analysis::LevelBetween(*spectrum, choice.fromHz, choice.toHz);
  if (!level) return AsLine(level.Why());
  if (!level->whole) return "the spectrum does not hold the whole band";
  placed.point.value = choice.of == TrendOf::BandRms ? level->rmsG : level->peakG;
  placed.known = true;
  return {};
}

}  // namespace

Trend TrendFor(Archive& archive, const Filter& filter, const TrendChoice& choice,
               const std::function<bool(std::int64_t done, std::int64_t all)>& goOn) {
  std::vector<Placed> rows = Rows(archive, filter, choice);
  const auto all = static_cast<std::int64_t>(rows.size());
  Gathering gathering(choice);
  std::int64_t done = 0;
  for (Placed& placed : rows) {
    if (done++ % kAskedEvery == 0 && !goOn(done - 1, all)) return {.whole = false};
    std::string why = "the record cannot carry this level";
    if (IsOfBand(choice.of)) why = WorkOut(archive, choice, placed);
    placed.known ? gathering.Add(placed) : gathering.Refuse(why);
  }
  return gathering.Take();
}

}  // namespace kestrel::archive
