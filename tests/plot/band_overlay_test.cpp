// The bands' lines and labels over a record.
// SPDX-License-Identifier: MIT
#include "plot/band_overlay.h"

#include "app/plot_scale.h"
#include "overlay_bench.h"

namespace kestrel {
namespace {

constexpr double kAmber = 255 + 256 * 230;
constexpr double kRed = 230;

using Ends4 = std::array<double, 4>;
using Words = std::vector<std::string>;

class Overlay : public OverlayBench {
 protected:
  [[nodiscard]] int VisibleLines() const {
    int visible = 0;
    for (int group = 0; group < 5; ++group) {
      for (int band = 0; band < 7; ++band) visible += Line(group, band).visible ? 1 : 0;
    }
    return visible;
  }
  [[nodiscard]] Words LabelTexts() const {
    Words texts;
    for (const auto& [place, label] : bandView.labels) texts.push_back(label.text);
    return texts;
  }
};

TEST_F(Overlay, EdgesAreVerticalAndLevelsLieBetweenThem) {
  SetBand(3, {40, 90, 4000, 9000});
  view.scaleCaption = "2";
  overlay.PlotBands();
  EXPECT_EQ(Ends(1, 3), (Ends4{40, 0, 40, 2}));
  EXPECT_EQ(Ends(2, 3), (Ends4{90, 0, 90, 2}));
  const Ends4 alarm1 = Ends(3, 3);
  const Ends4 alarm2 = Ends(4, 3);
  EXPECT_EQ(alarm1[0], 40);
  EXPECT_EQ(alarm1[2], 90);
  EXPECT_EQ(alarm2[0], 40);
  EXPECT_EQ(alarm2[2], 90);
  EXPECT_DOUBLE_EQ(alarm1[1], 0.3052);  // 4000 x 0.0000763 g
  EXPECT_DOUBLE_EQ(alarm1[3], 0.3052);
  EXPECT_DOUBLE_EQ(alarm2[1], 0.6867);  // 9000 x 0.0000763 g
  EXPECT_DOUBLE_EQ(alarm2[3], 0.6867);
}

TEST_F(Overlay, ThresholdsAreInGOfTheRangeAndModeInUse) {
  struct Row {
    int recCtrl;
    double alarm1, alarm2;  // of the codes 1000 and 65535
  };
  const Row rows[] = {{0x0000, 0.015259, 0.999998565},
                      {0x0010, 0.0763, 5.0003205},
                      {0x0020, 0.3052, 20.001282},
                      {0x0030, 1.1921, 78.1242735},
                      {0x0032, 2.3842, 156.248547}};
  SetBand(1, {10, 20, 1000, 65535});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.recCtrl);
    ReadRecCtrl(row.recCtrl);
    overlay.PlotBands();
    EXPECT_NEAR(Ends(3, 1)[1], row.alarm1, 1e-9);
    EXPECT_NEAR(Ends(4, 1)[1], row.alarm2, 1e-9);
  }
}

TEST_F(Overlay, TheOwnerChoosesAxisAndOption) {
  for (const Axis axis : kAxes) {
    for (int option = 0; option < 4; ++option) {
      const int key = 100 * (static_cast<int>(Index(axis)) + 1) + 10 * option;
      SetBand(2, {option + 1, option + 50, key, key + 1}, axis, option);
    }
  }
  for (const Axis axis : kAxes) {
    for (std::int16_t option = 0; option < 4; ++option) {
      SCOPED_TRACE(AxisName(axis) + std::to_string(option));
      owner.axis = axis;
      owner.option = option;
      overlay.PlotBands();
      const int key = 100 * (static_cast<int>(Index(axis)) + 1) + 10 * option;
      EXPECT_EQ(Ends(1, 2)[0], option + 1);
      EXPECT_EQ(Ends(2, 2)[0], option + 50);
      EXPECT_DOUBLE_EQ(Ends(3, 2)[1], key * 0.0000763);
      EXPECT_DOUBLE_EQ(Ends(4, 2)[1], (key + 1) * 0.0000763);
    }
  }
}

TEST_F(Overlay, LevelsHaveTheirOwnColours) {
  overlay.PlotBands();
  for (int band = 1; band <= 6; ++band) {
    EXPECT_EQ(Line(3, band).colour, kAmber);
    EXPECT_EQ(Line(4, band).colour, kRed);
    EXPECT_EQ(Line(1, band).colour, Line(2, band).colour);
    EXPECT_NE(Line(1, band).colour, kAmber);
    EXPECT_NE(Line(1, band).colour, kRed);
  }
}

TEST_F(Overlay, AllGroupsAreShownAndClearedTogetherButGroupZeroAndBandZeroAreNeverDrawn) {
  overlay.PlotBands();
  EXPECT_EQ(VisibleLines(), 5 * 6);
  for (int band = 1; band <= 6; ++band) EXPECT_TRUE(Line(0, band).visible);
  for (int group = 0; group < 5; ++group) EXPECT_FALSE(Line(group, 0).visible);
  EXPECT_EQ(bandView.lines.size(), 4U * 6U);
  for (const auto& [index, line] : bandView.lines) {
    EXPECT_GT(index, 7);
    EXPECT_NE(index % 7, 0);
    EXPECT_TRUE(line.visible);
  }
  overlay.ClearLines();
  EXPECT_EQ(VisibleLines(), 0);
  for (const auto& [index, line] : bandView.lines) EXPECT_FALSE(line.visible) << index;
}

TEST_F(Overlay, ShownLinesAreTheLinesItKeeps) {
  SetSixBands();
  overlay.PlotBands();
  ASSERT_EQ(bandView.lines.size(), 24U);
  for (const auto& [index, line] : bandView.lines) EXPECT_EQ(line, Line(index / 7, index % 7));
}

TEST_F(Overlay, PlotBandsMeasuresTheToleranceThenRedrawsThenDrawsTheBands) {
  SetSixBands();
  overlay.PlotBands();
  journal.Clear();
  SetBand(1, {11, 30, 1311, 3932});
  overlay.PlotBands();
  const Words steps =
      journal.Only({"scale height", "clear labels", "draw", "alarm", "line 8", "label 1L"});
  EXPECT_EQ(steps, (Words{"scale height", "clear labels", "draw", "alarm X", "alarm Y", "alarm Z",
                          "line 8", "label 1L"}));
}

TEST_F(Overlay, TheVerticalToleranceIsTheScalesHeightBeforeTheRedrawOver200) {
  overlay.PlotBands();
  EXPECT_EQ(overlay.Drag().Tolerance().y, 1.0 / 200);
  view.scaleCaption = "10";
  overlay.PlotBands();
  EXPECT_EQ(overlay.Drag().Tolerance().y, 1.0 / 200);
  overlay.PlotBands();
  EXPECT_EQ(overlay.Drag().Tolerance().y, 10.0 / 200);
  EXPECT_EQ(overlay.Drag().Tolerance().x, 0.5);
}

TEST_F(Overlay, TheHorizontalToleranceIsSetWithTheLines) {
  BandOverlay fresh(plot, bandView);
  EXPECT_EQ(fresh.Drag().Tolerance().x, 0);
  fresh.initPlotLines();
  EXPECT_EQ(fresh.Drag().Tolerance().x, 0.5);
}

TEST_F(Overlay, LabelsNameTheBandAndItsEnd) {
  SetSixBands();
  overlay.PlotBands();
  using Label = FakeBandOverlayView::Label;
  for (int band = 1; band <= 6; ++band) {
    const std::string number = std::to_string(band);
    EXPECT_EQ((bandView.labels[{false, band}]), (Label{number + "L", 40.0 * band - 30}));
    EXPECT_EQ((bandView.labels[{true, band}]), (Label{number + "H", 40.0 * band - 10}));
  }
}

TEST_F(Overlay, SetLineLabelIsForOneBand) {
  SetSixBands();
  overlay.PlotBands();
  bandView.labels.clear();
  overlay.SetLineLabel(4);
  EXPECT_EQ(LabelTexts(), (Words{"4L", "4H"}));
}

TEST_F(Overlay, WhileItIsOffTheRecordAloneIsDrawn) {
  SetSixBands();
  overlay.PlotBands();
  for (const bool closed : {false, true}) {
    owner.axis = std::nullopt;
    if (closed) overlay.SetOwner(nullptr);
    journal.Clear();
    overlay.PlotBands();
    EXPECT_EQ(journal.Count("draw"), 1);
    EXPECT_FALSE(overlay.IsOn());
    EXPECT_EQ(VisibleLines(), 0);
    EXPECT_EQ(LabelTexts(), Words(12, ""));
  }
}

TEST_F(Overlay, LosingTheOwnerTakesTheBandsAway) {
  overlay.PlotBands();
  EXPECT_TRUE(overlay.IsOn());
  overlay.SetOwner(nullptr);
  EXPECT_FALSE(overlay.IsOn());
  EXPECT_EQ(VisibleLines(), 0);
  EXPECT_EQ(LabelTexts(), Words(12, ""));
}

TEST_F(Overlay, AfterARedrawTheBandsAreWhereTheTableHasThemAndTheSensorIsAskedNothing) {
  SetSixBands();
  overlay.PlotBands();
  plot.PlotRecord();
  SetBand(2, {1, 2, 3, 4});
  ReadRecCtrl(0x0030);
  bandView.labels.clear();
  TakeFrames();
  journal.Clear();
  overlay.RecordRedrawn();
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_EQ(journal.Count("draw"), 0);
  EXPECT_EQ(Ends(1, 2)[0], 1);
  EXPECT_EQ(Ends(2, 2)[0], 2);
  EXPECT_DOUBLE_EQ(Ends(3, 2)[1], 3 * 0.0011921);
  EXPECT_EQ(bandView.labels.size(), 12U);
}

TEST_F(Overlay, OverATimeRecordThereAreNoLabelsUntilTheNextSpectrum) {
  SetSixBands();
  overlay.PlotBands();
  SetKind(RecordKind::Time);
  plot.PlotRecord();
  bandView.labels.clear();
  overlay.RecordRedrawn();
  EXPECT_TRUE(bandView.labels.empty());
  SetKind(RecordKind::Spectrum);
  plot.PlotRecord();
  overlay.RecordRedrawn();
  EXPECT_EQ(bandView.labels.size(), 12U);
}

TEST_F(Overlay, OddBandsAreDrawnAsTheyStand) {
  SetBand(1, {0, 255, 0, 65535});
  SetBand(2, {90, 40, 100, 200});
  SetBand(3, {300, 310, -5, 2147483647});
  overlay.PlotBands();
  EXPECT_EQ(Ends(1, 1), (Ends4{0, 0, 0, 1}));
  EXPECT_EQ(Ends(2, 1), (Ends4{255, 0, 255, 1}));
  EXPECT_EQ(Ends(3, 1), (Ends4{0, 0, 255, 0}));
  EXPECT_EQ(Ends(1, 2)[0], 90);
  EXPECT_EQ(Ends(2, 2)[0], 40);
  EXPECT_EQ(Ends(3, 2)[0], 90);
  EXPECT_EQ(Ends(3, 2)[2], 40);
  EXPECT_EQ(Ends(1, 3)[0], 300);
  EXPECT_DOUBLE_EQ(Ends(4, 3)[1], 2147483647.0 * 0.0000763);
}

TEST_F(Overlay, AnOptionThatDoesNotExistIsARunTimeError) {
  owner.option = 5;
  EXPECT_THROW(overlay.PlotBands(), RuntimeError);
}

}  // namespace
}  // namespace kestrel
