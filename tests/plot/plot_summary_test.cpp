// The record at hand told in words.
// SPDX-License-Identifier: MIT
#include "plot/plot_summary.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

class PlotSummaryOf : public ::testing::Test {
 protected:
  double& At(Axis axis, int point) { return record.Of(axis).data(point); }

  Record record;
};

TEST_F(PlotSummaryOf, ASpectrumTellsWhereEachAxisIsHighest) {
  At(Axis::X, 10) = 0.25;
  At(Axis::Y, 0) = 0.5;
  At(Axis::Z, 255) = 1.0004;
  EXPECT_EQ(PlotSummary(record, {true, true, true}),
            "Spectrum, bins 0 to 255. X: highest 0.250 g at bin 10, 1,957 Hz. Y: highest 0.500 g "
            "at bin 0, 0 Hz. Z: highest 1.000 g at bin 255, 49,899 Hz.");
}

TEST_F(PlotSummaryOf, TheFrequencyIsThatOfTheRecordsRate) {
  record.settings.option = 1;
  At(Axis::X, 10) = 0.25;
  EXPECT_EQ(PlotSummary(record, {true, false, false}),
            "Spectrum, bins 0 to 255. X: highest 0.250 g at bin 10, 245 Hz.");
}

TEST_F(PlotSummaryOf, OfEqualPeaksTheFirstIsTold) {
  At(Axis::X, 7) = At(Axis::X, 9) = 2;
  EXPECT_NE(PlotSummary(record, {true, false, false}).find("at bin 7,"), std::string::npos);
}

TEST_F(PlotSummaryOf, ATimeRecordTellsHowFarItReaches) {
  record.kind = RecordKind::Time;
  At(Axis::Z, 511) = -0.75;
  At(Axis::Z, 100) = 0.5;
  EXPECT_EQ(PlotSummary(record, {false, false, true}),
            "Time record, samples 0 to 511. Z: from -0.750 to 0.500 g.");
}

TEST_F(PlotSummaryOf, WhatIsBeyondAShorterRecordIsNotTold) {
  At(Axis::X, 300) = 9;
  EXPECT_EQ(PlotSummary(record, {true, false, false}),
            "Spectrum, bins 0 to 255. X: highest 0.000 g at bin 0, 0 Hz.");
}

}  // namespace
}  // namespace kestrel
