// Levels over time, apart where they cannot be compared.
// SPDX-License-Identifier: MIT
#include "archive/trend.h"

#include "analysis/levels.h"
#include "analysis/peaks.h"
#include "support/random_records.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using namespace std::chrono_literals;

class Trends : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override {
    place_ = GetParam().make();
    archive_ = std::make_unique<Archive>(place_->Connect());
    for (int i = 0; i < 120; ++i) {
      NewRecord made{NewUid(), records_.Next(), {}, "0.1.0", "bench 1"};
      // From the latest to the oldest: the archive puts them in order.
      made.record.time = std::chrono::system_clock::from_time_t(1'763'750'000) - i * 60s;
      made.remarks.machine = i % 3 == 0 ? "Fan" : "Pump";
      made_.push_back(made);
    }
    archive_->KeepAll(made_);
  }
  // What the trend should say of a record; none where it should refuse it.
  using Value = std::function<std::optional<double>(const Record&)>;
  void ExpectTrend(const TrendChoice& choice, const Value& value) {
    const Trend trend = TrendFor(*archive_, {.machine = "Pump"}, choice);
    std::map<std::int64_t, double> told;
    for (const TrendSeries& series : trend.series) {
      EXPECT_TRUE(std::ranges::is_sorted(series.points, {}, &TrendPoint::time));
      for (const TrendPoint& point : series.points) told[Nanos(point.time)] = point.value;
    }
    std::int64_t refused = 0;
    for (const NewRecord& made : made_) {
      if (made.remarks.machine != "Pump") continue;
      const auto wanted = value(made.record);
      const auto found = told.find(Nanos(made.record.time));
      ASSERT_EQ(found != told.end(), wanted.has_value());
      if (wanted) {
        EXPECT_EQ(found->second, *wanted);
      }
      refused += wanted ? 0 : 1;
    }
    EXPECT_EQ(trend.refused, refused);
    EXPECT_EQ(trend.refusal.empty(), refused == 0);
    EXPECT_TRUE(trend.whole);
  }
  static std::int64_t Nanos(std::chrono::system_clock::time_point time) {
    return time.time_since_epoch().count();
  }

  std::unique_ptr<TemporaryDatabase> place_;
  std::unique_ptr<Archive> archive_;
  std::vector<NewRecord> made_;
  RandomRecords records_{3};
};

TEST_P(Trends, KeptLevelsAreThoseOfTheRecords) {
  for (const Axis axis : kAxes) {
    ExpectTrend({.of = TrendOf::Rms, .axis = axis}, [&](const Record& record) {
      const auto level = LevelsFor(record)[Index(axis)];
      return level ? std::optional(level->rmsG) : std::nullopt;
    });
    ExpectTrend({.of = TrendOf::Peak, .axis = axis}, [&](const Record& record) {
      const auto level = LevelsFor(record)[Index(axis)];
      return level ? std::optional(level->peakG) : std::nullopt;
    });
  }
}

TEST_P(Trends, ConditionsAreThoseOfTheRecordsAndOneSeries) {
  ExpectTrend({.of = TrendOf::Temperature}, [](const Record& record) {
    return std::optional(double{record.conditions.temperatureC});
  });
  ExpectTrend({.of = TrendOf::Supply}, [](const Record& record) {
    return std::optional(double{record.conditions.supplyV});
  });
  EXPECT_EQ(TrendFor(*archive_, {}, {.of = TrendOf::Supply}).series.size(), 1U);
}

TEST_P(Trends, BandsAreWorkedOutWhereTheSpectrumHoldsThem) {
  const TrendChoice choice{.of = TrendOf::BandRms, .axis = Axis::Y, .fromHz = 100, .toHz = 2'000};
  ExpectTrend(choice, [&](const Record& record) -> std::optional<double> {
    if (record.kind == RecordKind::Time) return std::nullopt;
    const auto spectrum = analysis::SpectrumOf(record, Axis::Y, {.ownRange = true});
    if (!spectrum) return std::nullopt;
    const auto level = analysis::LevelBetween(*spectrum, 100, 2'000);
    if (!level || !level->whole) return std::nullopt;
    return level->rmsG;
  });
}

TEST_P(Trends, RecordsThatCannotBeComparedAreApart) {
  const Trend trend = TrendFor(*archive_, {}, {.of = TrendOf::Rms});
  EXPECT_GT(trend.series.size(), 4U);
  for (const TrendSeries& series : trend.series) {
    for (const TrendPoint& point : series.points) {
      const auto kept = archive_->Get(point.id);
      EXPECT_EQ(kept->record.kind, series.kind);
      EXPECT_EQ(kept->record.settings.option, series.option);
      const bool isTime = series.kind == RecordKind::Time;
      EXPECT_EQ(isTime ? 0 : kept->record.settings.window, series.window);
    }
  }
  EXPECT_EQ(trend.unit, "g RMS");
}

TEST_P(Trends, ItsOwnerMayEndIt) {
  int asked = 0;
  const Trend trend = TrendFor(*archive_, {}, {.of = TrendOf::BandRms, .toHz = 1'000},
                               [&](std::int64_t, std::int64_t all) {
                                 EXPECT_EQ(all, 120);
                                 return ++asked < 2;
                               });
  EXPECT_FALSE(trend.whole);
  EXPECT_TRUE(trend.series.empty());
}

TEST_P(Trends, APeakNearAFrequencyIsTheLargestThere) {
  const TrendChoice choice{
      .of = TrendOf::PeakNear, .axis = Axis::Z, .nearHz = 700, .withinHz = 300};
  ExpectTrend(choice, [](const Record& record) -> std::optional<double> {
    if (record.kind == RecordKind::Time) return std::nullopt;
    const auto spectrum = analysis::SpectrumOf(record, Axis::Z, {.ownRange = true});
    if (!spectrum) return std::nullopt;
    const auto level = analysis::LevelBetween(*spectrum, 400, 1000);
    if (!level || !level->whole) return std::nullopt;
    for (const auto& peak : analysis::FindPeaks(*spectrum, {.atMost = 256})) {
      if (peak.line.hz >= 400 && peak.line.hz <= 1000) return peak.line.peakG;
    }
    return std::nullopt;
  });
}

TEST_P(Trends, AllAxesAtOnceAreTheThreeOfThem) {
  for (const TrendOf of : {TrendOf::Rms, TrendOf::Peak, TrendOf::BandPeak, TrendOf::Supply}) {
    TrendChoice choice{.of = of, .fromHz = 100, .toHz = 2'000};
    const Levels all = LevelsOver(*archive_, {}, choice);
    ASSERT_FALSE(all.series.empty());
    for (const Axis axis : kAxes) {
      choice.axis = axis;
      const Trend one = TrendFor(*archive_, {}, choice);
      ASSERT_EQ(one.series.size(), all.series.size());
      for (std::size_t i = 0; i < all.series.size(); ++i) {
        EXPECT_EQ(one.series[i].option, all.series[i].option);
        ASSERT_EQ(one.series[i].points.size(), all.series[i].points.size());
        for (std::size_t n = 0; n < one.series[i].points.size(); ++n) {
          const LevelPoint& point = all.series[i].points[n];
          EXPECT_EQ(one.series[i].points[n].id, point.id);
          EXPECT_EQ(one.series[i].points[n].value, point.value[IsOfAxis(of) ? Index(axis) : 0]);
        }
      }
      EXPECT_EQ(one.unit, all.unit);
      EXPECT_EQ(one.refused, static_cast<std::int64_t>(all.refused.size()));
    }
  }
}

TEST_P(Trends, PointsTellTheSensorsAlarmWordsAndTheRange) {
  const Levels levels = LevelsOver(*archive_, {}, {.of = TrendOf::Temperature});
  ASSERT_EQ(levels.series.size(), 1U);
  ASSERT_EQ(levels.series[0].points.size(), made_.size());
  for (std::size_t i = 0; i < made_.size(); ++i) {
    const Record& record = made_[made_.size() - 1 - i].record;  // the oldest first
    const LevelPoint& point = levels.series[0].points[i];
    EXPECT_EQ(point.range, record.settings.range);
    for (const Axis axis : kAxes) {
      EXPECT_EQ(point.alarms[Index(axis)], record.alarms.Of(axis).status);
    }
  }
}

// The same value in all bins: nothing stands out.
NewRecord Flat(double lsbWeight) {
  NewRecord made{NewUid(), {}, {.machine = "Flat"}, "0.1.0", "bench 1"};
  made.record.kind = RecordKind::Spectrum;
  made.record.settings = SettingsFromWords(0x1D01, 0);
  made.record.scaledRange = static_cast<std::int16_t>(made.record.settings.range);
  made.record.lsbWeight = lsbWeight;
  for (AxisRecord& axis : made.record.axes) {
    for (int i = 0; i < static_cast<int>(made.record.Points()); ++i) {
      axis.raw(i) = 100;
      axis.data(i) = 100 * lsbWeight;
    }
  }
  return made;
}

TEST_P(Trends, ARecordWithoutAPeakThereIsRefusedWithTheReason) {
  archive_->Keep(Flat(0.001));
  const TrendChoice choice{.of = TrendOf::PeakNear, .nearHz = 700, .withinHz = 100};
  const Levels levels = LevelsOver(*archive_, {.machine = "Flat"}, choice);
  EXPECT_EQ(levels.refused.size(), 1U);
  EXPECT_EQ(levels.refusal, "no peak stands out of the noise within 100 Hz of 700 Hz");
  EXPECT_EQ(levels.unit, "g peak");
}

TEST_P(Trends, WhatASpectrumDoesNotHoldIsRefusedWithTheReason) {
  archive_->Keep(Flat(0.001));
  const Trend band = TrendFor(*archive_, {.machine = "Flat"},
                              {.of = TrendOf::BandRms, .fromHz = 100, .toHz = 1e6});
  EXPECT_EQ(band.refused, 1);
  EXPECT_EQ(band.refusal, "the spectrum does not hold the whole band");
  const Trend near = TrendFor(*archive_, {.machine = "Flat"},
                              {.of = TrendOf::PeakNear, .nearHz = 1e6, .withinHz = 10});
  EXPECT_EQ(near.refused, 1);
  EXPECT_NE(near.refusal, "");
}

TEST_P(Trends, ValuesThatAreNoNumbersAreRefusedWithTheReason) {
  archive_->Keep(Flat(std::numeric_limits<double>::infinity()));
  const Filter flat{.machine = "Flat"};
  const Trend worked =
      TrendFor(*archive_, flat, {.of = TrendOf::BandPeak, .fromHz = 100, .toHz = 200});
  EXPECT_EQ(worked.refused, 1);
  EXPECT_THAT(worked.refusal, testing::HasSubstr("values that are not numbers"));
  const Trend kept = TrendFor(*archive_, flat, {.of = TrendOf::Rms});
  EXPECT_EQ(kept.refused, 1);
  EXPECT_EQ(kept.refusal, "the record cannot carry this level");
  EXPECT_TRUE(kept.series.empty());
}

TEST_P(Trends, ARecordThatGoesAwayMeanwhileIsRefusedWithTheReason) {
  const std::int64_t id = archive_->Keep(Flat(0.001));
  const Levels levels =
      LevelsOver(*archive_, {.machine = "Flat"}, {.of = TrendOf::BandRms, .toHz = 1'000},
                 [&](std::int64_t done, std::int64_t all) {
                   EXPECT_EQ(done, 0);
                   EXPECT_EQ(all, 1);
                   archive_->Remove(std::vector{id});
                   return true;
                 });
  EXPECT_THAT(levels.refused, testing::ElementsAre(id));
  EXPECT_EQ(levels.refusal, "the record is not there any more");
}

TEST_P(Trends, ATimeRecordHasNoBands) {
  const Levels levels =
      LevelsOver(*archive_, {.kind = RecordKind::Time}, {.of = TrendOf::BandRms, .toHz = 1'000});
  EXPECT_FALSE(levels.refused.empty());
  EXPECT_EQ(levels.refusal, "a time record has no bands");
}

TEST_P(Trends, ItsOwnerMayEndWhatIsOnlyRead) {
  const Levels levels =
      LevelsOver(*archive_, {}, {.of = TrendOf::Rms}, [&](std::int64_t done, std::int64_t all) {
        EXPECT_EQ(done, 120);
        EXPECT_EQ(all, 120);
        return false;
      });
  EXPECT_FALSE(levels.whole);
  EXPECT_TRUE(levels.series.empty());
}

TEST_P(Trends, ItsOwnerIsAskedNowAndThen) {
  std::vector<std::int64_t> asked;
  const Levels levels = LevelsOver(*archive_, {}, {.of = TrendOf::BandRms, .toHz = 1'000},
                                   [&](std::int64_t done, std::int64_t) {
                                     asked.push_back(done);
                                     return true;
                                   });
  EXPECT_TRUE(levels.whole);
  EXPECT_THAT(asked, testing::ElementsAre(0, 64));
}

TEST_P(Trends, TheSeriesWithMostPointsComesFirst) {
  const Levels levels = LevelsOver(*archive_, {}, {.of = TrendOf::Rms});
  EXPECT_TRUE(std::ranges::is_sorted(levels.series, std::greater{}, [](const LevelSeries& series) {
    return series.points.size();
  }));
}

TEST_P(Trends, APointTellsWhetherAnAlarmWasOn) {
  NewRecord quiet = Flat(0.001);
  NewRecord loud = Flat(0.001);
  quiet.record.time = std::chrono::system_clock::from_time_t(1'763'000'000);
  loud.record.time = quiet.record.time + 1s;
  loud.record.alarms.axes[2].status = 4;
  archive_->KeepAll(std::vector{loud, quiet});
  const Trend trend = TrendFor(*archive_, {.machine = "Flat"}, {.of = TrendOf::Rms});
  ASSERT_EQ(trend.series.size(), 1U);
  ASSERT_EQ(trend.series[0].points.size(), 2U);
  EXPECT_FALSE(trend.series[0].points[0].alarm);
  EXPECT_TRUE(trend.series[0].points[1].alarm);
}

KESTREL_ON_EVERY_DATABASE(Trends);

TEST(TrendUnits, AreThoseOfTheLevels) {
  EXPECT_EQ(UnitOf(TrendOf::Rms), "g RMS");
  EXPECT_EQ(UnitOf(TrendOf::BandRms), "g RMS");
  EXPECT_EQ(UnitOf(TrendOf::Peak), "g peak");
  EXPECT_EQ(UnitOf(TrendOf::BandPeak), "g peak");
  EXPECT_EQ(UnitOf(TrendOf::PeakNear), "g peak");
  EXPECT_EQ(UnitOf(TrendOf::Temperature), "\u00B0C");
  EXPECT_EQ(UnitOf(TrendOf::Supply), "V");
}

}  // namespace
}  // namespace kestrel::archive
