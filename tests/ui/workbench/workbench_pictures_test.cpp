// Pictures of the workbench, light and dark, at two pixel ratios, beside approved ones.
// SPDX-License-Identifier: MIT
#include <ostream>

#include "support/memory_files.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/approved_picture.h"
#include "ui/archive_pictures.h"
#include "ui/rendering.h"
#include "ui/workbench/machine_records.h"

namespace kestrel {
namespace {

struct Sight {
  const char* name;
  bool isDark;
  double ratio;
  QSize size{1440, 900};
  bool isFilled = true;
};

void PrintTo(const Sight& sight, std::ostream* out) {
  *out << sight.name << (sight.isDark ? "dark" : "light") << sight.ratio;
}

class WorkbenchPictures : public ::testing::TestWithParam<Sight> {
 protected:
  ArchivePictures world_{MachineRecords(132, 24, 12)};
};

TEST_P(WorkbenchPictures, LookAsApproved) {
  const Sight& sight = GetParam();
  ApplyTheme(sight.isDark ? Theme::Dark : Theme::Light);
  MemoryFiles files;
  CurrentRecord record;
  RecordKeeper keeper(record, {.place = world_.Place()});
  AnalyserHost host{files, [] {}, [] {}, [](int) {}, [](Cure) {}, [] {}, [] {}, &keeper};
  frmAnalyser window(host);
  window.SetSensor("Simulated sensor", {});
  window.resize(sight.size);
  window.show();
  window.ChooseView(study::View::AlarmBands);
  WorkbenchModel& model = window.Workbench().Model();
  model.SetTable(MachineBandTable());
  if (sight.isFilled) {
    archive::Filter filter;
    filter.tag = "good";
    model.AddPart({.verdict = baseline::Verdict::Good, .name = {}, .filter = filter});
    filter.tag = "outer race";
    model.AddPart({.verdict = baseline::Verdict::Bad, .name = "outer race", .filter = filter});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !model.IsReading(); }, 20'000));
    ASSERT_TRUE(model.HasGood());
    model.ChooseCell({3, Axis::Z});
  }
  window.Workbench().FocusFirst();
  QTest::qWait(200);  // lists are laid out a moment after they are resized
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  const QString name = QStringLiteral("%1-%2-%3.png")
                           .arg(QLatin1String(sight.name), sight.isDark ? "dark" : "light")
                           .arg(sight.ratio);
  ExpectApproved(RenderOf(window, sight.ratio), name, sight.ratio, KESTREL_APPROVED);
}

INSTANTIATE_TEST_SUITE_P(All, WorkbenchPictures,
                         ::testing::Values(Sight{"workbench", false, 1},
                                           Sight{"workbench", true, 1},
                                           Sight{"workbench", false, 2},
                                           Sight{"workbench", true, 2},
                                           Sight{"workbench-1280x720", false, 1, QSize(1280, 720)},
                                           Sight{"empty", true, 1, QSize(1280, 720), false}));

}  // namespace
}  // namespace kestrel
