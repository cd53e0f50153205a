// The scene of a spectrum in every quantity, with its extras, others, bands, labels and
// differences. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "display/scene.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

using analysis::Quantity;

const double kBin = BinWidth(0);
const Sample kTone{.tones = {ToneAtBin(40.3, 1)}};

Sample At(int second, double peakG = 1) {
  return {.tones = {ToneAtBin(40.3, peakG)}, .second = second};
}

TEST(SpectrumScene, EveryQuantityHasItsTitle) {
  Study study = StudyOf({}, {kTone});
  const auto title = [&](const analysis::QuantityChoice& quantity) {
    Choose(study, [&](StudyChoice& choice) { choice.quantity = quantity; });
    return SceneOf(study).panes.at(0).title;
  };
  using analysis::Amplitude;
  EXPECT_EQ(title({}), "Acceleration, g peak");
  EXPECT_EQ(title({.amplitude = Amplitude::Rms}), "Acceleration, g RMS");
  EXPECT_EQ(title({.quantity = Quantity::Level}), "Level, dB re 1 g RMS");
  EXPECT_EQ(title({.quantity = Quantity::Level,
                   .reference = analysis::LevelReference::MicrometrePerSecondSquared}),
            "Level, dB re 1 µm/s² RMS");
  EXPECT_EQ(title({.quantity = Quantity::Density}), "Acceleration density, g²/Hz");
  EXPECT_EQ(title({.quantity = Quantity::Velocity, .amplitude = Amplitude::Rms}),
            "Velocity, mm/s RMS");
  EXPECT_EQ(title({.quantity = Quantity::Displacement, .amplitude = Amplitude::PeakToPeak}),
            "Displacement, µm peak to peak");
}

TEST(SpectrumScene, EveryHorizontalAxisHasItsTitleAndFactor) {
  StudyChoice choice;
  choice.machine.rpm = 6000;
  Study study = StudyOf(choice, {kTone});
  const auto across = [&](analysis::HorizontalUnit unit) {
    Choose(study, [&](StudyChoice& each) { each.unit = unit; });
    return SceneOf(study).across;
  };
  EXPECT_EQ(across(analysis::HorizontalUnit::Hertz).title, "Frequency, Hz");
  EXPECT_EQ(across(analysis::HorizontalUnit::Cpm).factor, 60);
  EXPECT_EQ(across(analysis::HorizontalUnit::Cpm).title, "Frequency, CPM");
  EXPECT_EQ(across(analysis::HorizontalUnit::Order).title, "Order of 6,000.00 rpm");
  EXPECT_DOUBLE_EQ(across(analysis::HorizontalUnit::Order).factor, 0.01);
  EXPECT_EQ(across(analysis::HorizontalUnit::Bin).title, "Bin");
}

TEST(SpectrumScene, BeginsToHoldVibrationAfterTheLobeOfItsWindow) {
  const std::array first{0.5, 1.5, 4.5};
  for (unsigned window = 0; window < 3; ++window) {
    const Study study = StudyOf({}, {{.window = static_cast<WindowShape>(window)}});
    EXPECT_DOUBLE_EQ(SceneOf(study).across.validFrom, first[window] * kBin) << window;
  }
  StudyChoice velocity;
  velocity.quantity.quantity = Quantity::Velocity;
  velocity.across = Scale::Logarithmic;
  const PlotAcross across = SceneOf(StudyOf(velocity, {{}})).across;
  EXPECT_DOUBLE_EQ(across.validFrom, 2.5 * kBin);
  EXPECT_DOUBLE_EQ(across.whole.low, 2.5 * kBin);
  EXPECT_EQ(across.kind, AxisKind::Logarithmic);
}

TEST(SpectrumScene, TheFocusIsFilledAndFiguresAreOverall) {
  const Study study = StudyOf({.focus = Axis::Y}, {kTone});
  const auto traces = SceneOf(study).panes.at(0).traces;
  ASSERT_EQ(traces.size(), 3U);
  EXPECT_FALSE(traces[0].isFilled);
  EXPECT_TRUE(traces[1].isFocus);
  EXPECT_TRUE(traces[1].isFilled);
  EXPECT_EQ(traces[0].figure, "0.707 g RMS");
  EXPECT_EQ(traces[0].x.size(), 256U);
}

TEST(SpectrumScene, ALogarithmicAxisHasNoZero) {
  const Study study = StudyOf({.up = Scale::Logarithmic}, {{}});
  const PlotPane pane = SceneOf(study).panes.at(0);
  EXPECT_EQ(pane.up, AxisKind::Logarithmic);
  for (const double value : pane.traces.at(0).y) EXPECT_GT(value, 0);
}

TEST(SpectrumScene, ARefusedQuantityHasNoPane) {
  StudyChoice choice;
  choice.quantity = {.quantity = Quantity::Velocity, .lowestHz = 1e6};
  EXPECT_TRUE(SceneOf(StudyOf(choice, {kTone})).panes.empty());
}

TEST(SpectrumScene, ExtrasAreNamedWithTheirCaptures) {
  StudyChoice choice{.shown = {true, false, false}};
  choice.extras = {Extra::LinearAverage, Extra::ExponentialAverage, Extra::MaximumHold,
                   Extra::MinimumHold};
  choice.averageOf = 2;
  Study study = StudyOf(choice, {At(1), At(2), At(3)});
  study.Freeze();
  study.TakeReference();
  std::vector<std::string> names;
  const PlotScene scene = SceneOf(study);
  for (const SceneTrace& trace : scene.panes.at(0).traces) names.push_back(trace.name);
  EXPECT_EQ(names, (std::vector<std::string>{"X", "Frozen X", "Reference X", "Average of 2 X",
                                             "Exponential average of 3 X", "Maximum of 3 X",
                                             "Minimum of 3 X"}));
}

TEST(SpectrumScene, AHoldHasNoDensity) {
  StudyChoice choice{.shown = {true, false, false}};
  choice.extras = {Extra::LinearAverage, Extra::MaximumHold};
  choice.quantity.quantity = Quantity::Density;
  const PlotScene scene = SceneOf(StudyOf(choice, {kTone}));
  ASSERT_EQ(scene.panes.at(0).traces.size(), 2U);
  EXPECT_EQ(scene.panes[0].traces[1].name, "Average of 1 X");
  EXPECT_EQ(scene.note,
            "Maximum of 1 is not drawn. A hold keeps one capture's value in each bin, which is not "
            "power. Take an average instead.");
  choice.shown = {true, true, true};
  EXPECT_EQ(SceneOf(StudyOf(choice, {kTone})).note, scene.note) << "said once for all axes";
  choice.quantity.quantity = Quantity::Acceleration;
  EXPECT_EQ(SceneOf(StudyOf(choice, {kTone})).note, "");
}

TEST(SpectrumScene, UpToFiveOtherRecordsAreTracesAndMoreACrowd) {
  std::vector<Sample> samples;
  for (int second = 1; second <= 8; ++second) samples.push_back(At(second));
  Study study = StudyOf({.shown = {true, false, false}}, samples);
  study.Select({1, 2, 3, 4, 5, 6});
  PlotPane pane = SceneOf(study).panes.at(0);
  EXPECT_EQ(pane.traces.size(), 6U);
  EXPECT_EQ(pane.traces[1].name, "at 2 s X");
  EXPECT_FALSE(pane.crowd);
  study.Select({1, 2, 3, 4, 5, 6, 7});
  pane = SceneOf(study).panes.at(0);
  EXPECT_EQ(pane.traces.size(), 1U);
  ASSERT_TRUE(pane.crowd);
  EXPECT_EQ(pane.crowd->name, "6 records, least to largest, median");
  EXPECT_EQ(pane.crowd->y.size(), 6U);
}

TEST(SpectrumScene, ACrowdHasTheBinsOfTheRecordShownAndSaysWhatItLeavesOut) {
  std::vector<Sample> samples;
  for (int second = 1; second <= 8; ++second) {
    samples.push_back(At(second));
    if (second == 2 || second == 5) samples.back().option = 1;
  }
  Study study = StudyOf({.shown = {true, false, false}}, samples);
  study.Select({1, 2, 3, 4, 5, 6, 7, 8});
  const PlotPane pane = SceneOf(study).panes.at(0);
  ASSERT_TRUE(pane.crowd);
  EXPECT_EQ(pane.crowd->y.size(), 5U);
  EXPECT_DOUBLE_EQ(pane.crowd->x[1], kBin);
  EXPECT_EQ(pane.crowd->name, "5 records, least to largest, median; 2 of other bins left out");
}

TEST(SpectrumScene, BandsHaveHeadroomAndThresholdsInAccelerationAndLevel) {
  Study study = StudyOf({}, {{.tones = {ToneAtBin(40, 1)}}});
  SensorBands bands;
  bands[0][0] = {.lowBin = 0, .highBin = 50, .warning = 5000, .fault = 0};
  bands[0][1] = {.lowBin = 40, .highBin = 40, .warning = 1000, .fault = 2000};
  study.SetSensorBands(0, bands);
  const auto of = [&](const analysis::QuantityChoice& quantity) {
    Choose(study, [&](StudyChoice& choice) { choice.quantity = quantity; });
    return SceneOf(study).panes.at(0).bands;
  };
  auto shown = of({});
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[0].headroom, "+3.7 dB");
  EXPECT_NEAR(shown[0].warning, 5000 * 0.0003052, 1e-9);
  EXPECT_TRUE(std::isnan(shown[0].fault));
  EXPECT_EQ(shown[1].state, BandState::Fault);
  EXPECT_DOUBLE_EQ(shown[1].from, 39.5 * kBin);
  EXPECT_DOUBLE_EQ(shown[1].to, 40.5 * kBin);
  // A band from the mean on has the threshold of vibration.
  EXPECT_NEAR(of({.amplitude = analysis::Amplitude::Rms})[0].warning,
              5000 * 0.0003052 / std::sqrt(2), 1e-9);
  EXPECT_TRUE(std::isnan(of({.quantity = Quantity::Velocity})[1].warning));
  Choose(study, [](StudyChoice& choice) { choice.showBands = false; });
  EXPECT_TRUE(of({}).empty());
}

TEST(SpectrumScene, ATransformHasNoBandsOfTheSensor) {
  Study study = StudyOf({}, {{.tones = {ToneAtBin(40, 1)}, .kind = RecordKind::Time}});
  SensorBands bands;
  bands[0][0] = {.lowBin = 0, .highBin = 50, .warning = 5000, .fault = 0};
  study.SetSensorBands(0, bands);
  EXPECT_TRUE(SceneOf(study).panes.at(0).bands.empty());
}

TEST(SpectrumScene, LabelsAreTheLargestPeaksThatTheQuantityTells) {
  Study study = StudyOf({.shown = {true, false, false}},
                        {{.tones = {ToneAtBin(2, 3), ToneAtBin(60.4, 1), ToneAtBin(150, 2)}}});
  const auto labels = [&] { return SceneOf(study).panes.at(0).peaks; };
  ASSERT_EQ(labels().size(), 3U);
  EXPECT_NEAR(labels()[0].x, 2 * kBin, 0.1 * kBin);
  EXPECT_EQ(labels()[1].detail, "X 2.00 g");
  Choose(study, [](StudyChoice& choice) { choice.quantity.quantity = Quantity::Velocity; });
  ASSERT_EQ(labels().size(), 2U);
  EXPECT_NEAR(labels()[0].x, 60.4 * kBin, 1);
  Choose(study, [](StudyChoice& choice) { choice.quantity.quantity = Quantity::Level; });
  EXPECT_EQ(labels()[1].detail, "X 3.0 dB");
  Choose(study, [](StudyChoice& choice) { choice.showLabels = false; });
  EXPECT_TRUE(labels().empty());
}

TEST(SpectrumScene, ThereAreTwelveLabelsAtMost) {
  Sample many;
  for (int i = 1; i <= 20; ++i) many.tones.push_back(ToneAtBin(12 * i, 0.1 * i));
  EXPECT_EQ(SceneOf(StudyOf({}, {many})).panes.at(0).peaks.size(), 12U);
}

TEST(SpectrumScene, MarksAreTheUsersAndTheKnownFrequencies) {
  StudyChoice choice;
  choice.markers = {{.hz = 1234, .text = "Pump"}};
  choice.machine.rpm = 60 * 20 * kBin;
  Study study = StudyOf(choice, {kTone});
  auto marks = SceneOf(study).marks;
  ASSERT_EQ(marks.size(), 1U);
  EXPECT_EQ(marks[0].name, "Pump");
  Choose(study, [](StudyChoice& each) { each.showKnown = true; });
  marks = SceneOf(study).marks;
  ASSERT_GE(marks.size(), 3U);
  EXPECT_LE(marks[0].from, 20 * kBin);
  EXPECT_GE(marks[0].to, 20 * kBin);
}

TEST(SpectrumScene, ADifferenceNeedsAReferenceOfTheSameSettings) {
  Study study = StudyOf({.difference = true}, {At(1)});
  PlotScene scene = SceneOf(study);
  EXPECT_EQ(scene.hint, "No reference. Take what is shown as reference (R) first.");
  study.TakeReference();
  study.Take(RecordOf(At(2, 2)));
  scene = SceneOf(study);
  EXPECT_EQ(scene.panes.at(0).title, "Level over reference, dB");
  EXPECT_EQ(scene.panes[0].up, AxisKind::Decibel);
  ASSERT_EQ(scene.panes[0].traces.size(), 3U);
  EXPECT_NEAR(scene.panes[0].traces[0].y[40], 20 * std::log10(2), 0.01);
  EXPECT_TRUE(scene.panes[0].peaks.empty());
  Sample other = At(3);
  other.window = WindowShape::FlatTop;
  study.Take(RecordOf(other));
  scene = SceneOf(study);
  EXPECT_TRUE(scene.panes.at(0).traces.empty());
  EXPECT_NE(scene.hint.find("other window: Flat top"), std::string::npos) << scene.hint;
}

TEST(SpectrumScene, ADifferenceDoesNotCareForTheQuantity) {
  StudyChoice choice{.difference = true};
  choice.quantity = {.quantity = Quantity::Velocity, .lowestHz = 30000};
  Study study = StudyOf(choice, {At(1)});
  study.TakeReference();
  EXPECT_DOUBLE_EQ(SceneOf(study).across.validFrom, 1.5 * kBin);
  EXPECT_EQ(SceneOf(study).panes.at(0).traces.size(), 3U);
}

TEST(SpectrumScene, StackedPanesHaveTheirOwnBandsAndLabels) {
  StudyChoice choice{.stacked = true};
  const PlotScene scene = SceneOf(StudyOf(choice, {kTone}));
  ASSERT_EQ(scene.panes.size(), 3U);
  for (const PlotPane& pane : scene.panes) {
    EXPECT_EQ(pane.traces.size(), 1U);
    EXPECT_EQ(pane.peaks.size(), 1U);
  }
}

TEST(SpectrumScene, EveryChoiceOverEveryRecordHasAScene) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    for (int quantity = 0; quantity < 5; ++quantity) {
      for (const View view : {View::Spectrum, View::Time, View::Waterfall}) {
        for (const bool isLog : {false, true}) {
          StudyChoice choice{.view = view, .stacked = isLog};
          choice.quantity.quantity = static_cast<Quantity>(quantity);
          choice.up = choice.across = isLog ? Scale::Logarithmic : Scale::Linear;
          Sample sample = kTone;
          sample.kind = kind;
          const Study study = StudyOf(choice, {sample});
          const PlotScene scene = SceneOf(study);
          EXPECT_FALSE(scene.head.empty());
          EXPECT_EQ(scene.panes.empty(), study.Refused().has_value());
          for (const PlotPane& pane : scene.panes) EXPECT_FALSE(pane.title.empty());
        }
      }
    }
  }
}

}  // namespace
}  // namespace kestrel::study
