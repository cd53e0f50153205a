// Every move of the cursor, and what it keeps.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "display/cursors.h"
#include "display/tables.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

const double kBin = BinWidth(0);
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class CursorMoves : public testing::Test {
 protected:
  void Use(CursorKind kind, const CursorPlaces& places) { PlaceCursor(study_, kind, places); }
  void Use(CursorKind kind, double atBin) { Use(kind, CursorPlaces{.at = atBin * kBin}); }
  void Use(CursorKind kind, double atBin, double secondBin) {
    Use(kind, CursorPlaces{.at = atBin * kBin, .second = secondBin * kBin});
  }
  void Members(int count) {
    Choose(study_, [&](StudyChoice& choice) { choice.cursorMembers = count; });
  }
  static double AtBin(const CursorPlaces& places) { return *places.at / kBin; }
  static double SecondBin(const CursorPlaces& places) { return *places.second / kBin; }

  Study study_ =
      StudyOf({}, {{.tones = {ToneAtBin(20.3, 1), ToneAtBin(60.4, 3), ToneAtBin(150.2, 2)}}});
};

TEST_F(CursorMoves, AClickPutsItOnTheNearestBinWithinTheVibration) {
  Use(CursorKind::Single, 10);
  EXPECT_NEAR(AtBin(Placed(study_, 33.4 * kBin)), 33, 1e-9);
  EXPECT_NEAR(AtBin(Placed(study_, -5)), 2, 1e-9);
  EXPECT_NEAR(AtBin(Placed(study_, 1e12)), 255, 1e-9);
}

TEST_F(CursorMoves, WhatIsNoNumberMovesNothing) {
  for (const CursorKind kind :
       {CursorKind::Single, CursorKind::Delta, CursorKind::Harmonic, CursorKind::Sideband}) {
    Use(kind, 60, 80);
    const CursorPlaces before = study_.Choice().Places();
    for (const double x : {kNan, std::numeric_limits<double>::infinity()}) {
      EXPECT_EQ(Placed(study_, x), before);
      EXPECT_EQ(Stepped(study_, x), before);
      EXPECT_EQ(Dragged(study_, 0, x), before);
      EXPECT_EQ(SnappedTo(study_, x), before);
    }
    EXPECT_EQ(Dragged(study_, -1, 1000), before);
  }
}

TEST_F(CursorMoves, WithoutARecordNothingMoves) {
  Study empty(SampleClock);
  PlaceCursor(empty, CursorKind::Delta, {.at = 5, .second = 6});
  const CursorPlaces before = empty.Choice().Places();
  EXPECT_EQ(Placed(empty, 1), before);
  EXPECT_EQ(Stepped(empty, 1), before);
  EXPECT_EQ(Dragged(empty, 0, 1), before);
  EXPECT_EQ(SnappedTo(empty, 1), before);
  EXPECT_EQ(ToPeakBySize(empty, 1), before);
  EXPECT_EQ(ToEnd(empty, true), before);
  EXPECT_EQ(BeginningOf(empty, CursorKind::Single), before);
}

TEST_F(CursorMoves, ClicksOfADeltaCursorMoveTheNearerLine) {
  Use(CursorKind::Delta, 20);
  CursorPlaces places = Placed(study_, 70 * kBin);
  EXPECT_NEAR(AtBin(places), 20, 1e-9);
  EXPECT_NEAR(SecondBin(places), 70, 1e-9);
  Use(CursorKind::Delta, places);
  places = Placed(study_, 50 * kBin);
  EXPECT_NEAR(SecondBin(places), 50, 1e-9);
  EXPECT_NEAR(AtBin(Placed(study_, 30 * kBin)), 30, 1e-9);
}

TEST_F(CursorMoves, ArrowsGoToTheNextBinAndTenthsGoBetween) {
  Use(CursorKind::Single, 20.3);
  EXPECT_NEAR(AtBin(Stepped(study_, 1)), 21, 1e-9);
  EXPECT_NEAR(AtBin(Stepped(study_, -1)), 19, 1e-9);
  EXPECT_NEAR(AtBin(Stepped(study_, 10)), 30, 1e-9);
  EXPECT_NEAR(AtBin(Stepped(study_, 0.1)), 20.4, 1e-9);
  EXPECT_NEAR(AtBin(Stepped(study_, -0.1)), 20.2, 1e-9);
}

TEST_F(CursorMoves, ArrowsStopAtTheEnds) {
  Use(CursorKind::Single, 3);
  EXPECT_NEAR(AtBin(Stepped(study_, -10)), 2, 1e-9);
  Use(CursorKind::Single, 254.95);
  EXPECT_NEAR(AtBin(Stepped(study_, 0.1)), 255, 1e-9);
  EXPECT_NEAR(AtBin(Stepped(study_, 10)), 255, 1e-9);
  // Of a record with other bins before.
  Use(CursorKind::Single, 1e6);
  EXPECT_NEAR(AtBin(Stepped(study_, -1)), 255, 1e-9);
}

TEST_F(CursorMoves, VelocityHasNoPlaceBelowItsLowestBin) {
  Choose(study_,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Velocity; });
  Use(CursorKind::Single, 4);
  EXPECT_NEAR(AtBin(Stepped(study_, -10)), 3, 1e-9);
  EXPECT_NEAR(AtBin(ToEnd(study_, false)), 3, 1e-9);
}

TEST_F(CursorMoves, KeysMoveTheSecondLineOfADeltaCursor) {
  Use(CursorKind::Delta, 20, 40);
  for (const CursorPlaces& places :
       {Stepped(study_, 5), ToEnd(study_, true), ToPeakBySize(study_, 1)}) {
    EXPECT_NEAR(AtBin(places), 20, 1e-9);
    EXPECT_NE(SecondBin(places), 40);
  }
}

TEST_F(CursorMoves, DraggingAnyHarmonicMovesAll) {
  Members(8);
  Use(CursorKind::Harmonic, 20.3);
  EXPECT_NEAR(AtBin(Dragged(study_, 0, 21 * kBin)), 21, 1e-9);
  EXPECT_NEAR(AtBin(Dragged(study_, 2, 63 * kBin)), 21, 1e-9);
  EXPECT_EQ(AtBin(Dragged(study_, 99, 63 * kBin)), 20.3);
}

TEST_F(CursorMoves, AHarmonicCursorIsNeverLostToTooSmallAFundamental) {
  Members(8);
  Use(CursorKind::Harmonic, 5);
  const CursorPlaces places = Dragged(study_, 7, 0);
  EXPECT_NEAR(AtBin(places), 1, 1e-9);
  Use(CursorKind::Harmonic, places);
  EXPECT_EQ(CursorOf(study_).members.size(), 8U);
}

TEST_F(CursorMoves, DraggingASidebandKeepsTheCentreAndTheCentreTheSpacing) {
  Members(6);
  Use(CursorKind::Sideband, 100, 10);
  CursorPlaces places = Dragged(study_, 5, 124 * kBin);  // +2
  EXPECT_NEAR(AtBin(places), 100, 1e-9);
  EXPECT_NEAR(SecondBin(places), 12, 1e-9);
  places = Dragged(study_, 1, 70 * kBin);  // −2
  EXPECT_NEAR(SecondBin(places), 15, 1e-9);
  places = Dragged(study_, 3, 111.5 * kBin);
  EXPECT_NEAR(AtBin(places), 111.5, 1e-9);
  EXPECT_NEAR(SecondBin(places), 10, 1e-9);
}

TEST_F(CursorMoves, SidebandsOffTheAxisDoNotShiftTheOthers) {
  Members(6);
  Use(CursorKind::Sideband, 15, 10);
  const auto members = CursorOf(study_).members;
  ASSERT_EQ(members.size(), 5U);  // −2 and −3 would be below 0 Hz
  EXPECT_EQ(members[0].flag, "−1");
  const CursorPlaces places = Dragged(study_, 2, 27 * kBin);  // +1
  EXPECT_NEAR(AtBin(places), 15, 1e-9);
  EXPECT_NEAR(SecondBin(places), 12, 1e-9);
}

TEST_F(CursorMoves, ASidebandDraggedAcrossItsCentreStaysASideband) {
  Members(6);
  Use(CursorKind::Sideband, 100, 10);
  const CursorPlaces places = Dragged(study_, 4, 60 * kBin);
  EXPECT_NEAR(SecondBin(places), 1, 1e-9);
  Use(CursorKind::Sideband, places);
  EXPECT_EQ(CursorOf(study_).members.size(), 7U);
}

TEST_F(CursorMoves, DraggingStaysOnTheAxis) {
  Use(CursorKind::Delta, 20, 40);
  EXPECT_NEAR(AtBin(Dragged(study_, 0, -1e9)), 2, 1e-9);
  EXPECT_NEAR(SecondBin(Dragged(study_, 1, 1e9)), 255, 1e-9);
}

TEST_F(CursorMoves, SnapsToThePeakWithinTenBins) {
  Use(CursorKind::Single, 100);
  EXPECT_NEAR(AtBin(SnappedTo(study_, 66 * kBin)), 60.4, 0.02);
  EXPECT_NEAR(AtBin(SnappedTo(study_, 90.3 * kBin)), 90, 1e-9);
}

TEST_F(CursorMoves, SnappingMovesTheLineThatAClickWouldMove) {
  Use(CursorKind::Delta, 58, 75);
  const CursorPlaces places = SnappedTo(study_, 69 * kBin);
  EXPECT_NEAR(AtBin(places), 58, 1e-9);
  EXPECT_NEAR(SecondBin(places), 60.4, 0.02);
}

TEST_F(CursorMoves, PageKeysGoThroughThePeaksBySize) {
  Use(CursorKind::Single, 100);
  CursorPlaces places = ToPeakBySize(study_, 1);
  EXPECT_NEAR(AtBin(places), 60.4, 0.02);
  for (const double bin : {150.2, 20.3, 20.3}) {
    Use(CursorKind::Single, places);
    places = ToPeakBySize(study_, 1);
    EXPECT_NEAR(AtBin(places), bin, 0.02);
  }
  Use(CursorKind::Single, places);
  EXPECT_NEAR(AtBin(ToPeakBySize(study_, -1)), 150.2, 0.02);
}

TEST_F(CursorMoves, TheSizeIsThatOfTheQuantityShown) {
  Choose(study_,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Displacement; });
  Use(CursorKind::Single, 100);
  EXPECT_NEAR(AtBin(ToPeakBySize(study_, 1)), 20.3, 0.02);
}

TEST_F(CursorMoves, ACursorBeginsAtTheLargestPeak) {
  Use(CursorKind::None, CursorPlaces{});
  EXPECT_NEAR(AtBin(BeginningOf(study_, CursorKind::Single)), 60.4, 0.02);
  EXPECT_FALSE(BeginningOf(study_, CursorKind::Single).second);
  EXPECT_NEAR(SecondBin(BeginningOf(study_, CursorKind::Delta)), 70.4, 0.02);
  EXPECT_NEAR(SecondBin(BeginningOf(study_, CursorKind::Sideband)), 10, 1e-9);
  EXPECT_FALSE(BeginningOf(study_, CursorKind::None).at);
}

TEST_F(CursorMoves, WithoutPeaksItBeginsInTheMiddle) {
  Study quiet = StudyOf({}, {{}});
  EXPECT_NEAR(AtBin(BeginningOf(quiet, CursorKind::Single)), (2 + 255) / 2.0, 1e-9);
}

TEST_F(CursorMoves, APlaceOffTheAxisBeginsAnew) {
  Use(CursorKind::Single, 1000);
  EXPECT_NEAR(AtBin(BeginningOf(study_, CursorKind::Single)), 60.4, 0.02);
  Use(CursorKind::Single, CursorPlaces{.at = kNan});
  EXPECT_NEAR(AtBin(BeginningOf(study_, CursorKind::Single)), 60.4, 0.02);
}

TEST_F(CursorMoves, TheSecondLineOfADeltaCursorIsNoSpacingOfSidebands) {
  Use(CursorKind::Delta, 60, 200);
  EXPECT_NEAR(SecondBin(BeginningOf(study_, CursorKind::Delta)), 200, 1e-9);
  EXPECT_NEAR(SecondBin(BeginningOf(study_, CursorKind::Sideband)), 10, 1e-9);
}

TEST_F(CursorMoves, OverTimeItMovesFromSampleToSample) {
  Study time =
      StudyOf({.view = View::Time}, {{.tones = {ToneAtBin(20, 1)}, .kind = RecordKind::Time}});
  const double step = 1 / SampleFrequency(0);
  PlaceCursor(time, CursorKind::Single, {.at = 10.4 * step});
  EXPECT_NEAR(*Stepped(time, 1).at / step, 11, 1e-9);
  EXPECT_NEAR(*ToEnd(time, true).at / step, 511, 1e-9);
  EXPECT_NEAR(*SnappedTo(time, 99.6 * step).at / step, 100, 1e-9);
  EXPECT_EQ(ToPeakBySize(time, 1), time.Choice().Places());
}

TEST_F(CursorMoves, NoSeriesOfMovesLeavesTheAxis) {
  std::mt19937 random(11);
  const auto any = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  std::uniform_real_distribution<double> place(-50000, 100000);
  std::uniform_real_distribution<double> bins(-300, 300);
  for (int round = 0; round < 3000; ++round) {
    const auto kind = static_cast<CursorKind>(any(5));
    const CursorPlaces begun = BeginningOf(study_, kind);
    Use(kind, begun);
    const std::array moves{Placed(study_, place(random)),          Stepped(study_, bins(random)),
                           Dragged(study_, any(8), place(random)), SnappedTo(study_, place(random)),
                           ToPeakBySize(study_, any(3) - 1),       ToEnd(study_, any(2) == 0)};
    const CursorPlaces& moved = moves[static_cast<std::size_t>(any(6))];
    Use(kind, moved);
    if (kind == CursorKind::None) continue;
    ASSERT_TRUE(moved.at);
    EXPECT_GE(AtBin(moved), 1 - 1e-9);
    EXPECT_LE(AtBin(moved), 255 + 1e-9);
    EXPECT_FALSE(CursorOf(study_).members.empty());
    EXPECT_FALSE(CursorTableOf(study_).summary.empty());
  }
}

}  // namespace
}  // namespace kestrel::study
