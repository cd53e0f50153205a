// What all scenes have in common: titles, panes, axes shown.
// SPDX-License-Identifier: MIT
#include "display/scene.h"

#include <gtest/gtest.h>

#include "study/sample_records.h"

namespace kestrel::study {
namespace {

TEST(Scene, WithoutARecordSaysHowToHaveOne) {
  const PlotScene scene = SceneOf(Study(SampleClock));
  EXPECT_EQ(scene.hint, "No record yet. Capture one (F5).");
  EXPECT_TRUE(scene.panes.empty());
}

TEST(Scene, IsTitledByItsRecord) {
  const PlotScene spectrum = SceneOf(StudyOf({}, {{.averages = 4, .second = 3}}));
  EXPECT_EQ(spectrum.head, "Spectrum");
  EXPECT_EQ(spectrum.line, "0 to 20 g, Hanning, 4 averages, option 0, Δf 195.7 Hz, at 3 s");
  const PlotScene time =
      SceneOf(StudyOf({.view = View::Time}, {{.kind = RecordKind::Time, .option = 1}}));
  EXPECT_EQ(time.head, "Time record");
  EXPECT_EQ(time.line, "0 to 20 g, option 1, Δt 79.85 µs, at 0 s");
}

TEST(Scene, PanesHoldTheAxesShown) {
  StudyChoice choice{.shown = {true, false, true}};
  EXPECT_EQ(ShownAxes(choice), (std::vector<Axis>{Axis::X, Axis::Z}));
  EXPECT_EQ(AxesOfPane(choice, 0).size(), 2U);
  EXPECT_EQ(PaneOf(choice, Axis::Z), 0);
  choice.stacked = true;
  EXPECT_EQ(AxesOfPane(choice, 1), (std::vector<Axis>{Axis::Z}));
  EXPECT_TRUE(AxesOfPane(choice, 2).empty());
  EXPECT_TRUE(AxesOfPane(choice, -1).empty());
  EXPECT_EQ(PaneOf(choice, Axis::Z), 1);
  choice.shown = {false, false, false};
  EXPECT_EQ(PaneOf(choice, Axis::Z), 0);
}

TEST(Scene, WithoutAnAxisSaysHowToHaveOne) {
  for (const View view : {View::Spectrum, View::Time}) {
    const Sample sample{.kind = view == View::Time ? RecordKind::Time : RecordKind::Spectrum};
    StudyChoice choice{.view = view, .shown = {false, false, false}};
    const PlotScene scene = SceneOf(StudyOf(choice, {sample}));
    EXPECT_EQ(scene.hint, "No axis is shown. Press X, Y or Z.");
    EXPECT_TRUE(scene.panes.empty());
  }
}

TEST(Scene, AnAxisThatCannotBeDrawnIsInHz) {
  StudyChoice choice;
  choice.unit = analysis::HorizontalUnit::Order;
  EXPECT_EQ(HorizontalOf(choice, 1).unit, analysis::HorizontalUnit::Hertz);
  choice.machine.rpm = 600;
  EXPECT_EQ(HorizontalOf(choice, 1).unit, analysis::HorizontalUnit::Order);
  choice.unit = analysis::HorizontalUnit::Bin;
  EXPECT_EQ(HorizontalOf(choice, 0).unit, analysis::HorizontalUnit::Hertz);
}

}  // namespace
}  // namespace kestrel::study
