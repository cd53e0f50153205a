// The record drawn on its scale, with its labels.
// SPDX-License-Identifier: MIT
#include "plot/spectrum_plot.h"

#include "device/rec_ctrl.h"
#include "record/capture_data.h"
#include "support/change_record.h"
#include "support/fake_plot_views.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

constexpr double kXColour = 205 + 256 * 50 + 65536 * 50;
constexpr double kYColour = 50 + 256 * 205 + 65536 * 50;
constexpr double kZColour = 50 + 256 * 50 + 65536 * 205;

using Words = std::vector<std::string>;

class Plot : public RegisterBench {
 protected:
  Plot() {
    Record record;
    record.kind = RecordKind::Time;  // all points
    for (int i = 0; i < 512; ++i) {
      record.Of(Axis::X).data(i) = 0.001 * i;
      record.Of(Axis::Y).data(i) = 1 + 0.001 * i;
      record.Of(Axis::Z).data(i) = -1 - 0.001 * i;
    }
    core.record.HandOver(record);
    SetKind(RecordKind::Spectrum);
  }

  void SetKind(RecordKind kind) {
    ChangeRecord(core.record, [kind](Record& record) { record.kind = kind; });
  }

  // Top, middle, bottom.
  [[nodiscard]] Words VerticalLabels() const { return {view.yMax, view.yMid, view.yMin}; }

  void ShowOnly(Axis axis) {
    view.ticked = {};
    view.ticked[Index(axis)] = true;
  }

  Journal journal;
  FakePlotView view{journal};
  FakeAlarmView alarmView{journal};
  AlarmStatus alarms{core.registers, alarmView};
  SpectrumPlot plot{core.record, view, alarms, loop, messages};
};

TEST_F(Plot, AnFftRecordRunsFromZeroToTheScale) {
  view.scaleCaption = "2";
  plot.PlotRecord();
  EXPECT_EQ(VerticalLabels(), (Words{"2", "1", "0"}));
  EXPECT_EQ(view.xMax, "255");
  EXPECT_EQ(view.unit, "bin");
  EXPECT_TRUE(view.frequencyShown);
  EXPECT_EQ(view.corners, (std::array<double, 4>{0, 2, 255, 0}));
  EXPECT_EQ(PlotScale, 2);
}

TEST_F(Plot, ATimeRecordRunsFromMinusTheScaleToTheScale) {
  SetKind(RecordKind::Time);
  view.scaleCaption = "2";
  plot.PlotRecord();
  EXPECT_EQ(VerticalLabels(), (Words{"2", "0", "-2"}));
  EXPECT_EQ(view.xMax, "511");
  EXPECT_EQ(view.unit, "sample");
  EXPECT_FALSE(view.frequencyShown);
  EXPECT_EQ(view.corners, (std::array<double, 4>{0, 2, 511, -2}));
}

TEST_F(Plot, HalfTheScaleIsInGeneralFormat) {
  view.scaleCaption = "0.25";
  plot.PlotRecord();
  EXPECT_EQ(VerticalLabels(), (Words{"0.25", "0.125", "0"}));
  view.scaleCaption = "0.02";
  plot.PlotRecord();
  EXPECT_EQ(VerticalLabels(), (Words{"0.02", "0.01", "0"}));
}

TEST_F(Plot, DrawsAllTracesPointByPointFromBinZero) {
  plot.PlotRecord();
  ASSERT_EQ(view.lines.size(), 3U * 255U);
  for (int i = 1; i <= 255; ++i) {
    SCOPED_TRACE(i);
    const auto at = static_cast<std::size_t>(3 * (i - 1));
    const DrawnLine x{i - 1.0, DataX(i - 1), 1.0 * i, DataX(i), kXColour};
    const DrawnLine y{i - 1.0, DataY(i - 1), 1.0 * i, DataY(i), kYColour};
    const DrawnLine z{i - 1.0, DataZ(i - 1), 1.0 * i, DataZ(i), kZColour};
    EXPECT_EQ(view.lines[at], x);
    EXPECT_EQ(view.lines[at + 1], y);
    EXPECT_EQ(view.lines[at + 2], z);
  }
}

TEST_F(Plot, ATimeRecordHas512Points) {
  SetKind(RecordKind::Time);
  ShowOnly(Axis::Z);
  plot.PlotRecord();
  ASSERT_EQ(view.lines.size(), 511U);
  EXPECT_EQ(view.lines.back(), (DrawnLine{510, DataZ(510), 511, DataZ(511), kZColour}));
}

TEST_F(Plot, OnlyTickedTracesAreDrawn) {
  for (const Axis axis : kAxes) {
    SCOPED_TRACE(AxisName(axis));
    ShowOnly(axis);
    plot.PlotRecord();
    const std::array colours{kXColour, kYColour, kZColour};
    ASSERT_EQ(view.lines.size(), 255U);
    EXPECT_EQ(view.lines.front().colour, colours[Index(axis)]);
  }
}

TEST_F(Plot, TraceBoxesAreAskedAtEveryPoint) {
  ShowOnly(Axis::Y);
  view.onLine = [this] {
    if (view.lines.size() == 10) ShowOnly(Axis::X);
  };
  plot.PlotRecord();
  ASSERT_EQ(view.lines.size(), 255U);
  EXPECT_EQ(view.lines[9].colour, kYColour);
  EXPECT_EQ(view.lines[10], (DrawnLine{10, DataX(10), 11, DataX(11), kXColour}));
}

TEST_F(Plot, ClearsBeforeDrawingAndEndsWithTheAlarmState) {
  plot.PlotRecord();
  EXPECT_EQ(journal.Entries(), (Words{"frequency shown", "scale", "clear plot", "clear labels",
                                      "draw", "alarm X", "alarm Y", "alarm Z"}));
  EXPECT_EQ(TakeFrames(), AlarmStatusFrames());
  EXPECT_EQ(loop.Paints(), 1);
  EXPECT_EQ(loop.Yields(), 0);
}

TEST_F(Plot, AnInvalidWidthIsNamedAndDrawnFromZero) {
  auto traces = TracesOf(core.record.Get());
  for (PlotTrace& trace : traces) trace.values = trace.values.first(100);
  view.yMax = "kept";
  plot.Draw(traces);
  EXPECT_EQ(messages.Texts(), Words{"Error... Sub Plot Record; Invalid Buff.width = 99"});
  EXPECT_EQ(view.corners, (std::array<double, 4>{0, 1, 99, 0}));
  EXPECT_EQ(view.yMax, "kept");
  EXPECT_EQ(view.xMax, "99");
  EXPECT_EQ(view.lines.size(), 3U * 99U);
  EXPECT_EQ(journal.Count("clear plot"), 1);
}

TEST_F(Plot, DrawingAloneAsksTheSensorNothing) {
  plot.Draw(TracesOf(core.record.Get()));
  EXPECT_EQ(view.lines.size(), 3U * 255U);
  EXPECT_EQ(TakeFrames(), Frames{});
}

// Two traces of one colour are two traces.
TEST_F(Plot, ATraceIsDrawnWhereItsAxisLies) {
  const std::array<double, 256> values{1, 2, 3};
  const PlotTrace trace{.axis = Axis::Z,
                        .name = "reference",
                        .unit = "g",
                        .horizontal = {.unit = "Hz", .first = 10, .step = 5},
                        .values = values,
                        .colour = kXColour};
  plot.Draw(std::array{trace, trace});
  EXPECT_EQ(view.unit, "Hz");
  ASSERT_EQ(view.lines.size(), 2U * 255U);
  EXPECT_EQ(view.lines[0], (DrawnLine{10, 1, 15, 2, kXColour}));
  EXPECT_EQ(view.lines[3], (DrawnLine{15, 2, 20, 3, kXColour}));
  EXPECT_EQ(view.numbers[2], 0U);
  EXPECT_EQ(view.numbers[3], 1U);
}

TEST_F(Plot, ACaptionThatIsNoNumberCountsAsZero) {
  view.scaleCaption = "scale";
  SetKind(RecordKind::Time);
  plot.PlotRecord();
  EXPECT_EQ(PlotScale, 0);
  EXPECT_EQ(VerticalLabels(), (Words{"0", "0", "0"}));
}

TEST_F(Plot, TheScaleStepsThroughItsRing) {
  const Words ring{"100", "50", "25", "10", "2", "1", "0.5", "0.25", "0.1", "0.02", "100"};
  view.scaleCaption = ring.front();
  for (std::size_t i = 1; i < ring.size(); ++i) {
    plot.cmdPlotScale_Click();
    EXPECT_EQ(view.scaleCaption, ring[i]) << "after " << ring[i - 1];
    EXPECT_EQ(view.yMax, ring[i]);
    EXPECT_EQ(view.corners[1], PlotScale);
  }
}

TEST_F(Plot, AnyOtherCaptionStepsTo100) {
  for (const char* caption : {"5", "", "0.020", "100.0", " 50", "abc"}) {
    view.scaleCaption = caption;
    plot.cmdPlotScale_Click();
    EXPECT_EQ(view.scaleCaption, "100") << caption;
  }
}

TEST_F(Plot, AScaleStepRedrawsOnce) {
  view.scaleCaption = "10";
  plot.cmdPlotScale_Click();
  EXPECT_EQ(PlotScale, 2);
  EXPECT_EQ(journal.Count("clear plot"), 1);
  EXPECT_EQ(TakeFrames(), AlarmStatusFrames());
}

// The step labels by the mode the sensor is set to; the drawing by the record at hand.
TEST_F(Plot, AScaleStepLabelsByRecordModeUntilTheRecordIsDrawn) {
  struct Row {
    std::int16_t mode;
    const char* mid;
    const char* bottom;
  };
  for (const Row& row : {Row{0, "1", "0"}, Row{1, "1", "0"}, Row{2, "0", "-2"}}) {
    SCOPED_TRACE(row.mode);
    gRecCtrl->RecModeCode(row.mode);
    view.scaleCaption = "10";
    view.yMins.clear();
    view.yMids.clear();
    plot.cmdPlotScale_Click();
    EXPECT_EQ(view.yMins, (Words{row.bottom, "0"}));
    EXPECT_EQ(view.yMids, (Words{row.mid, "1"}));
  }
}

TEST_F(Plot, AnInvalidModeIsNamedAndTheRecordStillRedrawn) {
  gRecCtrl->RecModeCode(3);
  view.scaleCaption = "1";
  plot.cmdPlotScale_Click();
  EXPECT_EQ(messages.Texts(), Words{"inValid RecordMode. sub = cmdPlotScale"});
  EXPECT_EQ(view.scaleCaption, "0.5");
  EXPECT_EQ(VerticalLabels(), (Words{"0.5", "0.25", "0"}));
  EXPECT_EQ(journal.Count("clear plot"), 1);
}

TEST_F(Plot, ThereIsAlwaysATrace) {
  view.ticked = {};
  plot.SetPlotTrace();
  EXPECT_EQ(journal.Entries().front(), "tick X");
  ASSERT_EQ(view.lines.size(), 255U);
  EXPECT_EQ(view.lines.front().colour, kXColour);
}

TEST_F(Plot, AChosenTraceIsLeftAlone) {
  ShowOnly(Axis::Z);
  plot.SetPlotTrace();
  EXPECT_EQ(journal.Count("tick X"), 0);
  EXPECT_EQ(view.ticked, (std::array<bool, 3>{false, false, true}));
  EXPECT_EQ(view.lines.size(), 255U);
}

}  // namespace
}  // namespace kestrel
