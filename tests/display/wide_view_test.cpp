// What the view of a wide spectrum shows.
// SPDX-License-Identifier: MIT
#include "display/wide_view.h"

#include <gmock/gmock.h>

#include <cmath>

#include "record/frequency.h"
#include "study/records.h"

namespace kestrel::study {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

std::string Moment(std::chrono::system_clock::time_point time) {
  return std::to_string(std::chrono::system_clock::to_time_t(time)) + " s";
}

// 50 Hz in every option that holds it; `word` in all bins else.
Record Capture(int option, int word = 4) {
  std::vector<std::pair<int, int>> lines;
  for (int bin = 0; bin < 256; ++bin) lines.emplace_back(bin, word);
  const int bin = static_cast<int>(std::lround(50 / BinWidth(option)));
  if (bin > 5 && bin < 250) {
    lines.emplace_back(bin - 1, 116);
    lines.emplace_back(bin, 232);
    lines.emplace_back(bin + 1, 116);
  }
  return *SpectrumRecord(100 * option, lines, option, 1);
}

analysis::WideSpectrum Whole() {
  return analysis::WideOf({Capture(0), Capture(1), Capture(2), Capture(3)});
}

PlotScene SceneOfWide(const analysis::WideSpectrum& wide, const WideLook& look = {}) {
  return WideScene(wide, look, {}, Moment);
}

TEST(WideView, WithoutRecordsSaysHowOneIsCaptured) {
  const PlotScene scene = SceneOfWide({});
  EXPECT_TRUE(scene.panes.empty());
  EXPECT_THAT(scene.hint, HasSubstr("one capture at each sample-rate option"));
  EXPECT_THAT(WideSeverityOf({}, {}).heading, HasSubstr("No zone"));
}

TEST(WideView, TracesBreakWhereTheOptionChanges) {
  const analysis::WideSpectrum wide = Whole();
  const PlotScene scene = SceneOfWide(wide);
  ASSERT_EQ(scene.panes.size(), 1U);
  ASSERT_EQ(scene.panes[0].traces.size(), 3U);
  const SceneTrace& trace = scene.panes[0].traces[0];
  EXPECT_EQ(std::ranges::count_if(trace.y, [](double y) { return std::isnan(y); }), 3);
  EXPECT_TRUE(std::ranges::is_sorted(trace.x));
  EXPECT_EQ(trace.x.size(), wide.axes[0]->points.size() + 3);
}

TEST(WideView, ItsLineSaysWhatTheCapturesShareAndWhenTheyWere) {
  const PlotScene scene = SceneOfWide(Whole());
  EXPECT_EQ(scene.head, "Wide spectrum");
  EXPECT_THAT(scene.line, StartsWith("1.15 Hz to 49.9 kHz, "));
  EXPECT_THAT(scene.line, HasSubstr("options 3, 2, 1, 0, "));
  EXPECT_THAT(scene.line, HasSubstr(" s to "));
  EXPECT_THAT(scene.line, Not(HasSubstr("Δf")));
}

TEST(WideView, OptionsAndLabelsAreShownWhereWanted) {
  const auto wide = Whole();
  const PlotPane with = SceneOfWide(wide).panes[0];
  ASSERT_EQ(with.bands.size(), 4U);
  EXPECT_EQ(with.bands[0].name, "option 3");
  EXPECT_LE(with.bands[0].to, with.bands[1].from + 1e-9);
  EXPECT_FALSE(with.peaks.empty());
  const PlotPane without = SceneOfWide(wide, {.hasOptions = false, .hasLabels = false}).panes[0];
  EXPECT_TRUE(without.bands.empty());
  EXPECT_TRUE(without.peaks.empty());
}

TEST(WideView, ALineIsListedOnceThoughThreeCapturesHoldIt) {
  StudyChoice choice;
  choice.shown = {true, false, false};
  const WideLines lines = WideLinesOf(Whole(), choice);
  const auto near = std::ranges::count_if(
      lines.rows, [](const WideLine& line) { return std::abs(line.hz - 50) < 5; });
  EXPECT_EQ(near, 1);
  const auto line = std::ranges::find_if(
      lines.rows, [](const WideLine& each) { return std::abs(each.hz - 50) < 5; });
  EXPECT_EQ(line->option, 2);  // of those that hold it the finest that is used there
  EXPECT_FALSE(line->velocity.empty());
  EXPECT_EQ(lines.AsText().rows.size(), lines.rows.size());
}

TEST(WideView, LanesTellWhatEachCaptureHoldsUsesAndHowItAgrees) {
  const auto lanes = OptionLanes(analysis::WideOf({Capture(3), Capture(2), Capture(0)}));
  ASSERT_EQ(lanes.size(), 4U);
  EXPECT_EQ(lanes[0].option, 3);
  EXPECT_THAT(lanes[0].text, StartsWith("3: Δf 0.382"));
  EXPECT_TRUE(lanes[0].isThere);
  EXPECT_EQ(lanes[0].chips.size(), 3U);
  EXPECT_LT(lanes[0].used.high, lanes[0].holds.high);
  EXPECT_FALSE(lanes[2].isThere);
  EXPECT_TRUE(lanes[2].chips.empty());
  EXPECT_LT(lanes[2].holds.low, lanes[2].holds.high);
}

TEST(WideView, DisagreementAndWhatIsMissingAreDoubtsWithTheirCure) {
  const auto wide = analysis::WideOf({Capture(3), Capture(2, 60), Capture(0)});
  const auto doubts = WideDoubtsOf(wide);
  ASSERT_GE(doubts.size(), 2U);
  EXPECT_EQ(doubts.front().id, "unsteadyX3");
  EXPECT_THAT(doubts.front().text, StartsWith("X: options 3 and 2 differ by "));
  EXPECT_EQ(doubts.front().again, 0b1100U);
  EXPECT_EQ(doubts.back().id, "missing");
  EXPECT_EQ(doubts.back().again, 0b0010U);
}

TEST(WideView, SeverityIsOfTheseCapturesOrSaysWhichAreMissing) {
  const SeverityView told = WideSeverityOf(Whole(), {});
  ASSERT_TRUE(told.IsTold());
  EXPECT_THAT(told.note, HasSubstr("not a certificate"));
  const SeverityView refused = WideSeverityOf(analysis::WideOf({Capture(0)}), {});
  EXPECT_FALSE(refused.IsTold());
  EXPECT_EQ(refused.missing, (std::vector{3, 2, 1}));
}

TEST(WideView, ReadOutAndTableTellTheSameValues) {
  const auto wide = Whole();
  const WideLook look{.quantity = {.quantity = analysis::Quantity::Acceleration}};
  const PlotReadOut out = WideReadOutAt(wide, look, {}, 50);
  EXPECT_THAT(out.title, HasSubstr("Hz, option 2"));
  ASSERT_EQ(out.rows.size(), 3U);
  EXPECT_THAT(out.rows[0].value, HasSubstr(" g"));
  const std::string table = WideTable(wide, look);
  EXPECT_THAT(table, StartsWith("Frequency Hz,Option,X g peak,Y g peak,Z g peak\n"));
  EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(table, '\n')),
            WideFrequencies(wide).size() + 1);
}

}  // namespace
}  // namespace kestrel::study
