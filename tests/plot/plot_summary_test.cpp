// The record at hand told in words.
// SPDX-License-Identifier: MIT
#include "plot/plot_summary.h"

#include <gtest/gtest.h>

#include "record/capture_data.h"

namespace kestrel {
namespace {

class PlotSummaryOf : public ::testing::Test {
 protected:
  PlotSummaryOf() { ResetCaptureData(); }
  ~PlotSummaryOf() override { ResetCaptureData(); }
};

TEST_F(PlotSummaryOf, ASpectrumTellsWhereEachAxisIsHighest) {
  DataX(10) = 0.25;
  DataY(0) = 0.5;
  DataZ(255) = 1.0004;
  EXPECT_EQ(PlotSummary({true, true, true}),
            "Spectrum, bins 0 to 255. X: highest 0.250 g at bin 10, 1,957 Hz. Y: highest 0.500 g "
            "at bin 0, 0 Hz. Z: highest 1.000 g at bin 255, 49,899 Hz.");
}

TEST_F(PlotSummaryOf, TheFrequencyIsThatOfTheRecordsRate) {
  Buff.sampleRateOption = 1;
  DataX(10) = 0.25;
  EXPECT_EQ(PlotSummary({true, false, false}),
            "Spectrum, bins 0 to 255. X: highest 0.250 g at bin 10, 245 Hz.");
}

TEST_F(PlotSummaryOf, OfEqualPeaksTheFirstIsTold) {
  DataX(7) = DataX(9) = 2;
  EXPECT_NE(PlotSummary({true, false, false}).find("at bin 7,"), std::string::npos);
}

TEST_F(PlotSummaryOf, ATimeRecordTellsHowFarItReaches) {
  Buff.width = kTimeWidth;
  DataZ(511) = -0.75;
  DataZ(100) = 0.5;
  EXPECT_EQ(PlotSummary({false, false, true}),
            "Time record, samples 0 to 511. Z: from -0.750 to 0.500 g.");
}

TEST_F(PlotSummaryOf, WhatIsBeyondAShorterRecordIsNotTold) {
  DataX(300) = 9;
  EXPECT_EQ(PlotSummary({true, false, false}),
            "Spectrum, bins 0 to 255. X: highest 0.000 g at bin 0, 0 Hz.");
}

}  // namespace
}  // namespace kestrel
