// Records measured: tones between bins in every option, window and range, and amplitudes with
// bounds. SPDX-License-Identifier: MIT
#include "study/measured.h"

#include <gtest/gtest.h>

#include <cmath>

#include "study/sample_records.h"

namespace kestrel::study {
namespace {

using analysis::Quantity;

TEST(Measured, AToneBetweenBinsReadsWithinItsBoundInEveryOptionWindowAndRange) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    for (int option = 0; option < 4; ++option) {
      for (int range = 0; range < 4; ++range) {
        for (unsigned window = 0; window < 3; ++window) {
          const double peakG = 0.4 * FullScaleOf(static_cast<std::int16_t>(range));
          const Tone tone = ToneAtBin(50.37, peakG, option);
          StudyChoice choice;
          choice.timeWindow = analysis::WindowOfCode(static_cast<int>(window)).kind;
          const Measured measured = Measure(RecordOf({.tones = {tone},
                                                      .kind = kind,
                                                      .option = option,
                                                      .window = static_cast<WindowShape>(window),
                                                      .range = range}),
                                            choice);
          const auto& peaks = measured.Of(Axis::X)->peaks;
          ASSERT_FALSE(peaks.empty()) << option << range << window;
          const analysis::Line& line = peaks.front().line;
          EXPECT_NEAR(line.hz, tone.frequencyHz, line.hzBound) << option << range << window;
          ASSERT_TRUE(line.peakBoundG) << option << range << window;
          EXPECT_NEAR(line.peakG, peakG, *line.peakBoundG) << option << range << window;
          EXPECT_LT(*line.peakBoundG, 0.2 * peakG) << option << range << window;
        }
      }
    }
  }
}

TEST(Measured, IsScaledByTheRecordsOwnRange) {
  const Sample sample{.tones = {ToneAtBin(40, 5)}};
  Record wrong = Rescaled(TakenOf(sample), 0);
  const Measured measured = Measure(std::make_shared<const Record>(wrong), {});
  EXPECT_NEAR(measured.Of(Axis::X)->spectrum.peakG[40], 5, 0.001);
}

TEST(Measured, MagnitudesTakenForRmsAreLarger) {
  StudyChoice choice;
  choice.meaning = analysis::MagnitudeMeaning::Rms;
  const Measured measured = Measure(RecordOf({.tones = {ToneAtBin(40, 1)}}), choice);
  EXPECT_NEAR(measured.Of(Axis::X)->spectrum.peakG[40], std::sqrt(2.0), 0.001);
}

TEST(Measured, ZerosAndFullScaleAreMeasured) {
  const auto all = [](double word) {
    return Changed({}, [word](Record& record) {
      for (const Axis axis : kAxes) {
        for (int i = 0; i < 256; ++i) record.Of(axis).raw(i) = word;
      }
      record = Rescaled(record, record.settings.range);
    });
  };
  const Measured zeros = Measure(all(0), {});
  EXPECT_TRUE(zeros.Of(Axis::X)->peaks.empty());
  EXPECT_EQ(zeros.Of(Axis::X)->curve->values[100], 0);
  const Measured full = Measure(all(65535), {});
  EXPECT_TRUE(full.Of(Axis::X)->peaks.empty());
  EXPECT_NEAR(full.Of(Axis::X)->curve->values[100], 20, 0.01);
}

TEST(Measured, PeaksAreToldWhereTheQuantityIsAndLargestInItFirst) {
  // Bin 2 holds vibration but is too low to integrate.
  const RecordPointer record =
      RecordOf({.tones = {ToneAtBin(2, 3), ToneAtBin(20, 1), ToneAtBin(100, 2)}});
  StudyChoice choice;
  const auto bins = [&] {
    const Measured measured = Measure(record, choice);
    std::vector<std::size_t> found;
    for (const auto& peak : ToldPeaks(*measured.Of(Axis::X))) found.push_back(peak.bin);
    return found;
  };
  EXPECT_EQ(bins(), (std::vector<std::size_t>{2, 100, 20}));
  choice.quantity.quantity = Quantity::Velocity;
  EXPECT_EQ(bins(), (std::vector<std::size_t>{20, 100}));
  choice.quantity.lowestHz = 30 * BinWidth(0);
  EXPECT_EQ(bins(), (std::vector<std::size_t>{100}));
  choice.quantity.lowestHz = 1e6;
  EXPECT_TRUE(bins().empty());
}

TEST(Measured, AnAmplitudesBoundIsTheLargerSideAndHoldsTheFrequencysError) {
  const analysis::Spectrum spectrum{.binWidthHz = 10, .stepG = 1e-6};
  const analysis::Line line{.hz = 100, .hzBound = 2, .peakG = 1, .peakBoundG = 0.5};
  const auto of = [&](Quantity quantity) {
    return analysis::ValueOf(spectrum, {.quantity = quantity}, line);
  };
  EXPECT_DOUBLE_EQ(*of(Quantity::Acceleration).bound, 0.5);
  EXPECT_NEAR(*of(Quantity::Level).bound, 20 * std::log10(2), 1e-9);
  const analysis::LineValue velocity = of(Quantity::Velocity);
  EXPECT_NEAR(velocity.value, analysis::kVelocityOfG / 100, 1e-9);
  EXPECT_NEAR(*velocity.bound, analysis::kVelocityOfG * (1.5 / 98 - 1.0 / 100), 1e-9);
  const analysis::Line unresolved{.hz = 100, .peakG = 1, .unresolved = true};
  EXPECT_FALSE(analysis::ValueOf(spectrum, {}, unresolved).bound);
}

TEST(Measured, ACaptureIsTheSameWhateverItsScaleAndAlarms) {
  const Record record = TakenOf({.tones = {ToneAtBin(40, 1)}, .second = 3});
  Record other = Rescaled(record, 3);
  other.alarms.peaksKnown = true;
  EXPECT_TRUE(IsSameCapture(record, other));
  other.Of(Axis::Z).raw(9) += 1;
  EXPECT_FALSE(IsSameCapture(record, other));
  other = record;
  other.time += std::chrono::milliseconds(1);
  EXPECT_FALSE(IsSameCapture(record, other));
}

}  // namespace
}  // namespace kestrel::study
