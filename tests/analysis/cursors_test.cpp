// Behaviour of cursors.
// SPDX-License-Identifier: MIT
#include "analysis/cursors.h"

#include <gmock/gmock.h>

#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Cursors, AReadingLiesOnTheLineThatIsDrawn) {
  const std::vector<double> values{9, 9, 2, 4, 8};
  const TraceView trace{.values = &values, .x0 = 0, .step = 10, .firstValid = 2};
  EXPECT_EQ(ReadAt(trace, 20), 2);
  EXPECT_EQ(ReadAt(trace, 35), 6);
  EXPECT_EQ(ReadAt(trace, 40), 8);
  for (const double outside : {10.0, 19.0, 41.0, kNan}) EXPECT_FALSE(ReadAt(trace, outside));
  EXPECT_FALSE(ReadAt(TraceView{}, 1));
}

TEST(Cursors, StepsStayWithinWhatCanBeTold) {
  const std::vector<double> values(256, 1.0);
  const TraceView trace{.values = &values, .x0 = 0, .step = 10, .firstValid = 2};
  EXPECT_EQ(Moved(trace, 100, CursorStep::Bin, 1), 110);
  EXPECT_EQ(Moved(trace, 100, CursorStep::TenBins, -1), 20);
  EXPECT_EQ(Moved(trace, 1000, CursorStep::TenBins, 2), 1200);
  EXPECT_EQ(Moved(trace, 2500, CursorStep::TenBins, 1), 2550);
  EXPECT_DOUBLE_EQ(Moved(trace, 100, CursorStep::TenthOfBin, 3), 103);
  EXPECT_EQ(Moved(trace, 103, CursorStep::Bin, 1), 110);
  EXPECT_EQ(OnPoint(trace, -1e12), 20);
  EXPECT_EQ(OnPoint(trace, kNan), 0);
}

TEST(Cursors, DeltaTellsDifferenceRatioAndReciprocal) {
  const std::vector<double> values{0, 1, 2, 10};
  const std::vector<double> levels{0, -6, -3, 4};
  const std::vector<TraceView> traces{{&values, 0, 5, 0}, {&levels, 0, 5, 0, true}};
  const DeltaReading reading = ReadDelta(traces, 5, 15);
  EXPECT_EQ(reading.dx, 10);
  EXPECT_DOUBLE_EQ(*reading.reciprocal, 0.1);
  EXPECT_EQ(reading.rows[0].difference, 9);
  EXPECT_DOUBLE_EQ(*reading.rows[0].ratioDb, 20);
  EXPECT_EQ(reading.rows[1].ratioDb, 10);
}

TEST(Cursors, DeltaOfNothingHasNoRatioAndOfOnePlaceNoReciprocal) {
  const std::vector<double> values{0, 1, 2, 10};
  const DeltaReading reading = ReadDelta({{&values, 0, 5, 0}}, 0, 5);
  EXPECT_EQ(reading.rows[0].difference, 1);
  EXPECT_FALSE(reading.rows[0].ratioDb);
  EXPECT_FALSE(ReadDelta({}, 5, 5).reciprocal);
  EXPECT_TRUE(ReadDelta({{&values, 0, 5, 0}}, kNan, 5).rows.empty());
}

TEST(Cursors, DraggingAMemberMovesTheOthers) {
  EXPECT_EQ(HarmonicDragged(4, 1000), 250);
  EXPECT_EQ(SidebandDragged(1000, -2, 900), 50);
  EXPECT_FALSE(HarmonicDragged(0, 1000));
  EXPECT_FALSE(HarmonicDragged(2, -1));
  EXPECT_FALSE(HarmonicDragged(2, kNan));
  EXPECT_FALSE(SidebandDragged(1000, 0, 900));
  EXPECT_FALSE(SidebandDragged(1000, 2, 900));
  EXPECT_FALSE(SidebandDragged(1000, 2, 1000));
  EXPECT_FALSE(SidebandDragged(kNan, 2, 900));
  EXPECT_FALSE(SidebandDragged(1000, 2, kNan));
}

TEST(Cursors, SnapGoesToTheInterpolatedPeakWithinReach) {
  const Spectrum spectrum = SpectrumOfTones({{70.4, 0.9, 1}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const std::vector<Peak> peaks = FindPeaks(spectrum);
  EXPECT_NEAR(Snapped(peaks, 71 * width, width), 70.4 * width, 0.001 * width);
  EXPECT_EQ(Snapped(peaks, 75 * width, width), 75 * width);
}

TEST(Cursors, ATraceThatCannotBeReadLeavesTheCursorAtItsBeginning) {
  const std::vector<double> values{1, 2};
  for (const TraceView& trace :
       {TraceView{.x0 = 7}, TraceView{.values = &values, .x0 = 7, .step = 0},
        TraceView{.values = &values, .x0 = 7, .firstValid = 2}}) {
    EXPECT_FALSE(ReadAt(trace, 7));
    EXPECT_EQ(Moved(trace, 9, CursorStep::Bin, 1), 7);
    EXPECT_EQ(OnPoint(trace, 9), 7);
  }
  EXPECT_EQ(Moved({.values = &values, .x0 = 7}, kNan, CursorStep::Bin, 1), 7);
}

TEST(Cursors, WhatIsBeyondTheLastPointByRoundingAloneIsThatPoint) {
  const std::vector<double> values{9, 2, 4};
  const TraceView trace{.values = &values, .x0 = 0, .step = 10, .firstValid = 1};
  EXPECT_EQ(ReadAt(trace, 20 + 1e-9), 4);
  EXPECT_EQ(ReadAt(trace, 10 - 1e-9), 2);
  EXPECT_FALSE(ReadAt(trace, 20 + 1e-7));
}

TEST(Cursors, ARatioOfPowersIsTenTimesTheLogarithmAndOneToNothingIsNone) {
  const std::vector<double> values{0, 1, 100};
  const TraceView power{.values = &values, .step = 5, .power = true};
  const TraceView amplitude{.values = &values, .step = 5};
  const DeltaReading reading = ReadDelta({power, amplitude}, 5, 10);
  EXPECT_DOUBLE_EQ(*reading.rows[0].ratioDb, 20);
  EXPECT_DOUBLE_EQ(*reading.rows[1].ratioDb, 40);
  const DeltaReading falling = ReadDelta({power}, 5, 0);
  EXPECT_EQ(falling.rows[0].difference, -1);
  EXPECT_FALSE(falling.rows[0].ratioDb);
  EXPECT_DOUBLE_EQ(*falling.reciprocal, 0.2);
}

TEST(Cursors, DeltaToWhereTheTraceHasEndedTellsTheOneEndAndNoDifference) {
  const std::vector<double> values{1, 2, 4};
  const TraceView trace{.values = &values, .step = 5};
  const DeltaReading beyond = ReadDelta({trace}, 5, 50);
  EXPECT_EQ(beyond.rows[0].from, 2);
  EXPECT_FALSE(beyond.rows[0].to);
  EXPECT_FALSE(beyond.rows[0].difference);
  EXPECT_FALSE(ReadDelta({trace}, 50, 5).rows[0].difference);
}

}  // namespace
}  // namespace kestrel::analysis
