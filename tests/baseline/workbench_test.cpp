// What moves when a rule, an edge, a threshold or the judgement does.
// SPDX-License-Identifier: MIT
#include "baseline/workbench.h"

#include <random>

#include "made_records.h"

namespace kestrel::baseline {
namespace {

using testing::Each;

struct World {
  Sets sets;
  std::shared_ptr<const Spectra> spectra;
};

// The bad ones have a line in bin 70 of Z.
World MadeWorld(unsigned seed, int good, int bad) {
  std::mt19937 random(seed);
  std::lognormal_distribution<double> noise(5, 0.1);
  World world;
  world.sets.settings = {.option = 0, .window = 1, .range = 3, .averages = 4};
  Spectra spectra(static_cast<std::size_t>(good + bad));
  for (int i = 0; i < good + bad; ++i) {
    std::vector<Word> words;
    (i < good ? world.sets.good : world.sets.bad).push_back({.id = i + 1, .time = MinuteOf(i)});
    for (std::size_t at = 0; at < Spectra::kWords; ++at) {
      const bool line = i >= good && at == 2 * 256 + 70;
      words.push_back(static_cast<Word>(std::lround(noise(random) * (line ? 4 : 1))));
    }
    spectra.Set(static_cast<std::size_t>(i), words);
  }
  world.spectra = std::make_shared<Spectra>(std::move(spectra));
  return world;
}

Bands SomeBands() {
  Bands bands = UsualBands(1);
  for (Band& band : bands) {
    band.warning = {300, 300, 300};
    band.fault = {400, 400, 400};
  }
  return bands;
}

// Worked out from the words alone.
Overall OverallBySight(const Workbench& bench, const World& world) {
  Overall overall{.falseAlarms = {0, static_cast<int>(world.sets.good.size())},
                  .misses = {0, static_cast<int>(world.sets.bad.size())}};
  for (std::size_t record = 0; record < world.spectra->Count(); ++record) {
    bool alarm = false;
    for (const CellPlace& place : AllCells()) {
      const Band& band = bench.BandAt(place.band);
      for (int bin = band.lowBin; bin <= band.highBin; ++bin) {
        alarm = alarm || (bench.At(place).warning > 0 &&
                          world.spectra->At(record, place.axis, static_cast<std::size_t>(bin)) >
                              bench.At(place).warning);
      }
    }
    const bool good = record < world.sets.good.size();
    if (good && alarm) ++overall.falseAlarms.counted;
    if (!good && !alarm) ++overall.misses.counted;
  }
  return overall;
}

class TheWorkbench : public testing::Test {
 protected:
  const World world = MadeWorld(1, 132, 24);
  Workbench bench{world.sets, world.spectra, SomeBands()};
  void ExpectCountsBySight() { EXPECT_EQ(bench.Everything(), OverallBySight(bench, world)); }
};

TEST_F(TheWorkbench, BeginsWithTheRulesProposals) {
  for (const CellPlace& place : AllCells()) {
    const CellState& cell = bench.At(place);
    EXPECT_EQ(cell.warning, *cell.proposal.warning.proposed);
    EXPECT_EQ(cell.fault, *cell.proposal.fault.proposed);
    EXPECT_EQ(cell.proposal.warning.now, 300);
    EXPECT_EQ(cell.warnings, CountsAt(cell.levels, world.sets, cell.warning, {}));
    EXPECT_EQ(cell.faults, CountsAt(cell.levels, world.sets, cell.fault, {}));
    EXPECT_FALSE(cell.isMoved);
  }
  ExpectCountsBySight();
  EXPECT_GE(bench.At({5, Axis::Z}).warnings.caught.counted, 20);
}

TEST_F(TheWorkbench, AMovedThresholdChangesItsCountsAtOnceAndOnlyThese) {
  const CellState before = bench.At({5, Axis::Z});
  bench.SetThreshold({5, Axis::Z}, Alarm::Warning, 150.2);
  const CellState& cell = bench.At({5, Axis::Z});
  EXPECT_EQ(cell.warning, 151);
  EXPECT_TRUE(cell.isMoved);
  EXPECT_GT(cell.warnings.falseAlarms.counted, before.warnings.falseAlarms.counted);
  EXPECT_EQ(cell.faults, before.faults);
  ExpectCountsBySight();
  bench.SetThreshold({5, Axis::Z}, Alarm::Warning, 0);
  EXPECT_EQ(bench.At({5, Axis::Z}).warnings.caught.counted, 0);
  ExpectCountsBySight();
  bench.ResetThreshold({5, Axis::Z});
  EXPECT_EQ(bench.At({5, Axis::Z}).warning, before.warning);
  EXPECT_FALSE(bench.At({5, Axis::Z}).isMoved);
  ExpectCountsBySight();
}

TEST_F(TheWorkbench, AWarningTakesTheFaultWithItAndLikewiseDown) {
  const CellPlace place{2, Axis::X};
  bench.SetThreshold(place, Alarm::Warning, 5000);
  EXPECT_EQ(bench.At(place).fault, 5000);
  bench.SetThreshold(place, Alarm::Fault, 100);
  EXPECT_EQ(bench.At(place).warning, 100);
  bench.SetThreshold(place, Alarm::Fault, 0);
  EXPECT_EQ(bench.At(place).warning, 100);
  EXPECT_EQ(bench.At(place).fault, 0);
  bench.SetThreshold(place, Alarm::Warning, 1e9);
  EXPECT_EQ(bench.At(place).warning, 65535);
  EXPECT_EQ(bench.At(place).fault, 0);
}

TEST_F(TheWorkbench, AMovedEdgeMeasuresTheBandAnew) {
  bench.SetEdges(5, 71, 90);
  EXPECT_EQ(bench.BandAt(5).lowBin, 71);
  EXPECT_EQ(bench.BandAt(5).highBin, 90);
  EXPECT_LT(bench.At({5, Axis::Z}).warnings.caught.counted, 10);
  ExpectCountsBySight();
  bench.SetEdges(5, -3, 999);
  EXPECT_EQ(bench.BandAt(5).lowBin, 0);
  EXPECT_EQ(bench.BandAt(5).highBin, 255);
  EXPECT_EQ(bench.At({5, Axis::Z}).warnings.caught.counted, 24);
  bench.SetEdges(5, 9, 3);
  EXPECT_EQ(bench.At({5, Axis::Z}).proposal.refusal, "The band covers no bin.");
  EXPECT_EQ(bench.At({5, Axis::Z}).warnings, Counts{});
  ExpectCountsBySight();
}

TEST_F(TheWorkbench, AnotherRuleProposesEverythingAnew) {
  bench.SetThreshold({1, Axis::X}, Alarm::Warning, 50);
  bench.SetRule({.kind = RuleKind::Limit95});
  EXPECT_FALSE(bench.At({1, Axis::X}).isMoved);
  for (const CellPlace& place : AllCells()) {
    EXPECT_LE(bench.At(place).warnings.falseAlarms.counted, 6);
  }
  ExpectCountsBySight();
  bench.SetRule({.kind = RuleKind::Limit99});
  EXPECT_EQ(bench.At({1, Axis::X}).proposal.refusal,
            "Needs 299 good records, 167 more than are chosen.");
  EXPECT_EQ(bench.At({1, Axis::X}).warning, 300) << "what is present is kept";
  EXPECT_EQ(bench.Result(), SomeBands());
  EXPECT_EQ(bench.Changes(), 0);
}

TEST_F(TheWorkbench, ThePresentThresholdsCanBeReplayedToo) {
  EXPECT_FALSE(bench.UsesPresent());
  bench.UsePresent();
  EXPECT_TRUE(bench.UsesPresent());
  EXPECT_EQ(bench.Result(), SomeBands());
  EXPECT_EQ(bench.Changes(), 0);
  ExpectCountsBySight();
}

TEST_F(TheWorkbench, SeveralInARowAreJudgedByTheProgram) {
  const int single = bench.At({5, Axis::Z}).warnings.falseAlarms.counted;
  bench.SetThreshold({5, Axis::Z}, Alarm::Warning, 190);
  const int all = bench.At({5, Axis::Z}).warnings.falseAlarms.counted;
  bench.SetJudgement({.m = 3, .n = 3, .hysteresisDb = 0});
  EXPECT_LT(bench.At({5, Axis::Z}).warnings.falseAlarms.counted, all);
  EXPECT_EQ(bench.At({5, Axis::Z}).warnings.caught.counted, 22) << "two come before the third";
  bench.SetJudgement({});
  bench.ResetThreshold({5, Axis::Z});
  EXPECT_EQ(bench.At({5, Axis::Z}).warnings.falseAlarms.counted, single);
  ExpectCountsBySight();
}

TEST_F(TheWorkbench, RmsIsReplayedButNotWritten) {
  bench.SetKind(LevelKind::BandRms);
  EXPECT_FALSE(bench.CanBeWritten());
  const CellState& cell = bench.At({5, Axis::Z});
  EXPECT_EQ(cell.proposal.warning.now, 0);
  EXPECT_NE(cell.warning, std::floor(cell.warning));
  EXPECT_EQ(bench.Result(), SomeBands());
  bench.SetKind(LevelKind::BandPeak);
  EXPECT_TRUE(bench.CanBeWritten());
  ExpectCountsBySight();
}

TEST_F(TheWorkbench, WithoutRecordsItStandsStill) {
  Workbench empty({}, std::make_shared<Spectra>(), SomeBands());
  EXPECT_EQ(empty.Everything(), Overall{});
  EXPECT_EQ(empty.Result(), SomeBands());
  empty.SetEdges(1, 3, 4);
  empty.SetThreshold({1, Axis::Y}, Alarm::Fault, 9);
  empty.SetJudgement({.m = 2, .n = 4});
  EXPECT_EQ(empty.Changes(), 4) << "two edges, and the fault takes the warning with it to 9";
  const Workbench none;
  EXPECT_EQ(none.At({6, Axis::Z}).levels.refusal, "");
  EXPECT_EQ(none.Changes(), 0);
}

TEST(BaselineBands, GoIntoTheTableAndBackAndTouchNoOtherOption) {
  BandTable table;
  for (int option = 0; option < 4; ++option) {
    for (int band = 1; band <= 6; ++band) {
      for (const int field : kBandFields)
        table(field, band, option) = 1000 * option + 10 * band + field;
    }
  }
  EXPECT_EQ(BandsOf(table, 2)[4].warning[1], 2054);
  EXPECT_EQ(BandsOf(table, 2)[4].fault[2], 2059);
  EXPECT_EQ(WithBands(table, 2, BandsOf(table, 2)), table);
  const BandTable other = WithBands(table, 1, SomeBands());
  EXPECT_EQ(BandsOf(other, 1), SomeBands());
  for (const int option : {0, 2, 3}) EXPECT_EQ(BandsOf(other, option), BandsOf(table, option));
}

TEST(BaselineBands, UsualBandsAdjoinFromTheFirstVibrationToTheLastBin) {
  for (const int window : {0, 1, 2, 3}) {
    const Bands bands = UsualBands(window);
    EXPECT_EQ(bands.front().lowBin,
              static_cast<int>(analysis::FirstVibrationBin(analysis::WindowOfCode(window))));
    EXPECT_EQ(bands.back().highBin, 255);
    for (std::size_t i = 0; i < bands.size(); ++i) {
      EXPECT_TRUE(bands[i].IsUsed());
      EXPECT_THAT(bands[i].warning, Each(0));
      EXPECT_EQ(bands[i].lowBin, i == 0 ? bands[0].lowBin : bands[i - 1].highBin + 1);
    }
  }
}

}  // namespace
}  // namespace kestrel::baseline
