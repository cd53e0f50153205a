// Pictures of the trend view, light and dark, at two pixel ratios, beside approved ones.
// SPDX-License-Identifier: MIT
#include <ostream>
#include <random>

#include "support/memory_files.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/approved_picture.h"
#include "ui/archive_pictures.h"
#include "ui/made_up_records.h"
#include "ui/rendering.h"

namespace kestrel {
namespace {

struct Sight {
  bool isDark;
  double ratio;
};

void PrintTo(const Sight& sight, std::ostream* out) {
  *out << (sight.isDark ? "dark" : "light") << sight.ratio;
}

class TrendPictures : public ::testing::TestWithParam<Sight> {
 protected:
  // Forty days of a record every 40 minutes, with a gap; the line of Z grows at the end.
  static std::vector<archive::NewRecord> Records() {
    std::mt19937 random(7);
    std::vector<archive::NewRecord> records;
    for (int i = 0; i < 1440; ++i) {
      if (i > 450 && i < 520) continue;
      const int growth = i > 900 ? (i - 900) : 0;
      const int noise = static_cast<int>(random() % 50);
      archive::NewRecord record{
          archive::NewUid(),
          MadeUpSpectrum(2400 * i, {{42, 700 + growth + noise}, {84, 300 + noise}, {126, 90}}),
          {.machine = "Pump 1", .point = "Drive end"},
          "0.1.0",
          "bench 1"};
      record.record.settings = SettingsFromWords(1 << 12 | 2 << 10 | 8, 0);
      record.record.conditions.temperatureC =
          25.0F + 3.0F * static_cast<float>(std::sin(i / 36.0 * 6.283));
      if (i > 1250) record.record.alarms.axes[2].status = 1 << 8;
      if (i > 1420) record.record.alarms.axes[2].status = 3 << 8;
      record.record.sensor = {31407, "Ezusb-0", "Board 7", true};
      records.push_back(std::move(record));
    }
    return records;
  }

  ArchivePictures world_{Records()};
};

TEST_P(TrendPictures, LookAsApproved) {
  const Sight& sight = GetParam();
  ApplyTheme(sight.isDark ? Theme::Dark : Theme::Light);
  MemoryFiles files;
  CurrentRecord record;
  RecordKeeper keeper(record, {.place = world_.Place()});
  AnalyserHost host{files, [] {}, [] {}, [](int) {}, [](Cure) {}, [] {}, [] {}, &keeper};
  frmAnalyser window(host);
  window.SetSensor("Simulated sensor", {});
  study::SensorBands bands{};
  bands[2][2] = {.lowBin = 40, .highBin = 44, .warning = 1050, .fault = 1220};
  window.Model().SetSensorBands({{0, bands}});
  window.Model().Change([](study::StudyChoice& choice) { choice.focus = Axis::Z; });
  window.resize(1280, 720);
  window.show();
  window.ChooseView(study::View::Trend);
  TrendView& view = window.Trend();
  view.ChooseLevel({.of = archive::TrendOf::BandPeak,
                    .fromHz = 39.5 * BinWidth(0),
                    .toHz = 44.5 * BinWidth(0),
                    .name = "Band 3",
                    .band = 3});
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return view.Source()->Data().Shown().size() == 1371; }, 20'000));
  window.findChild<QToolButton*>("cmdTrendTemperature")->click();
  view.FocusPlot();
  QTest::keyClick(&view.Plot(), Qt::Key_End);
  QTest::keyClick(&view.Plot(), Qt::Key_PageUp);
  QTest::keyClick(&view.Plot(), Qt::Key_PageUp);
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return window.findChild<QToolButton*>("cmdTrendOpen")->isEnabled(); }, 20'000));
  QTest::qWait(300);
  EXPECT_EQ(window.size(), QSize(1280, 720)) << "the smallest screen";
  const QString name =
      QStringLiteral("trend-%1-%2.png").arg(sight.isDark ? "dark" : "light").arg(sight.ratio);
  ExpectApproved(RenderOf(window, sight.ratio), name, sight.ratio, KESTREL_APPROVED);
}

INSTANTIATE_TEST_SUITE_P(All, TrendPictures,
                         ::testing::Values(Sight{false, 1}, Sight{true, 1}, Sight{false, 2},
                                           Sight{true, 2}));

}  // namespace
}  // namespace kestrel
