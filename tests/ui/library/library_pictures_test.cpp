// Pictures of the library, light and dark, at two pixel ratios, beside approved ones.
// SPDX-License-Identifier: MIT
#include <ostream>

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

class LibraryPictures : public ::testing::TestWithParam<Sight> {
 protected:
  // A record every half hour, whose third harmonic grows.
  static std::vector<archive::NewRecord> Records() {
    std::vector<archive::NewRecord> records;
    for (int i = 0; i < 40; ++i) {
      archive::NewRecord record{
          archive::NewUid(),
          MadeUpSpectrum(1800 * i, {{42, 700 + 20 * i}, {84, 300}, {126, 90}}, i % 7 == 3 ? 2 : 0),
          {.machine = i % 3 == 0 ? "Fan, hall 2" : "Pump 1",
           .point = i % 3 == 0 ? "Bearing A" : "Drive end",
           .note = i == 36 ? "After the bearing was greased" : ""},
          "0.1.0",
          "bench 1"};
      record.record.settings =
          SettingsFromWords((i % 7 == 3 ? 2 : 0) << 14 | 1 << 12 | 2 << 10 | 8, 0);
      if (i % 8 == 5) record.remarks.tags = {"reference"};
      if (i > 33) record.record.alarms.axes[2].status = 0x17;
      record.record.sensor = {31407, "Ezusb-0", "Board 7", true};
      records.push_back(std::move(record));
    }
    return records;
  }

  ArchivePictures world_{Records()};
};

TEST_P(LibraryPictures, LookAsApproved) {
  const Sight& sight = GetParam();
  ApplyTheme(sight.isDark ? Theme::Dark : Theme::Light);
  MemoryFiles files;
  CurrentRecord record;
  RecordKeeper keeper(record, {.place = world_.Place()});
  keeper.SetSite({.machine = "Pump 1", .point = "Drive end", .rpm = 1480});
  AnalyserHost host{files, [] {}, [] {}, [](int) {}, [](Cure) {}, [] {}, [] {}, &keeper};
  frmAnalyser window(host);
  window.SetSensor("Simulated sensor", {});
  window.resize(1280, 720);
  window.show();
  window.ChooseView(study::View::Library);
  LibraryTable& table = *window.Library().Table();
  ASSERT_TRUE(QTest::qWaitFor([&] { return table.model()->rowCount() == 40; }));
  ASSERT_TRUE(QTest::qWaitFor([&] {
    table.viewport()->repaint();
    const QModelIndex last = table.model()->index(table.rowAt(table.viewport()->height() - 2), 0);
    return !last.data(LibraryModel::Sketch).value<QList<double>>().empty();
  }));
  QTest::qWait(100);
  table.selectRow(3);
  QApplication::processEvents();
  const QString name =
      QStringLiteral("library-%1-%2.png").arg(sight.isDark ? "dark" : "light").arg(sight.ratio);
  ExpectApproved(RenderOf(window, sight.ratio), name, sight.ratio, KESTREL_APPROVED);
}

INSTANTIATE_TEST_SUITE_P(All, LibraryPictures,
                         ::testing::Values(Sight{false, 1}, Sight{true, 1}, Sight{false, 2},
                                           Sight{true, 2}));

}  // namespace
}  // namespace kestrel
