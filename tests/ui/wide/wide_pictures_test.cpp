// Pictures of the wide view, light and dark, at two pixel ratios, beside approved ones.
// SPDX-License-Identifier: MIT
#include <ostream>

#include "support/memory_files.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/approved_picture.h"
#include "ui/archive_pictures.h"
#include "ui/rendering.h"
#include "ui/wide/wide_records.h"

namespace kestrel {
namespace {

struct Sight {
  const char* name;
  bool isDark;
  double ratio;
  unsigned options = 0b1111;
  double factor = 1;  // of option 1's magnitudes: another one than 1 is an unsteady machine
  QSize size{1440, 900};
};

void PrintTo(const Sight& sight, std::ostream* out) {
  *out << sight.name << (sight.isDark ? "dark" : "light") << sight.ratio;
}

class WidePictures : public ::testing::TestWithParam<Sight> {
 protected:
  ArchivePictures world_{{}};
};

TEST_P(WidePictures, LookAsApproved) {
  const Sight& sight = GetParam();
  ApplyTheme(sight.isDark ? Theme::Dark : Theme::Light);
  MemoryFiles files;
  CurrentRecord record;
  RecordKeeper keeper(record, {.place = world_.Place()});
  AnalyserHost host{files, [] {}, [] {}, [](int) {}, [](Cure) {}, [] {}, [] {}, &keeper};
  host.wideSeconds = [] { return 96.0; };
  frmAnalyser window(host);
  window.SetSensor("Simulated sensor", {});
  window.resize(sight.size);
  window.show();
  window.ChooseView(study::View::Wide);
  window.Model().Change([](study::StudyChoice& choice) { choice.focus = Axis::Z; });
  if (sight.options != 0) {
    window.Wide().Model().Begin(0b1111);
    for (int option = 0; option < 4; ++option) {
      if ((sight.options >> option & 1U) == 0) continue;
      window.Wide().Model().Take(WideRecord(option, option == 1 ? sight.factor : 1));
    }
    window.Wide().FocusPlot();
    QTest::keyClick(&window.Wide().Plot(), Qt::Key_P);
  }
  QTest::qWait(200);
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  const QString name = QStringLiteral("%1-%2-%3.png")
                           .arg(QLatin1String(sight.name), sight.isDark ? "dark" : "light")
                           .arg(sight.ratio);
  ExpectApproved(RenderOf(window, sight.ratio), name, sight.ratio, KESTREL_APPROVED);
}

INSTANTIATE_TEST_SUITE_P(
    All, WidePictures,
    ::testing::Values(Sight{"wide", false, 1}, Sight{"wide", true, 1}, Sight{"wide", false, 2},
                      Sight{"wide", true, 2}, Sight{"unsteady", false, 1, 0b1111, 2.2},
                      Sight{"incomplete", true, 1, 0b0101},
                      Sight{"empty", false, 1, 0, 1, QSize(1280, 720)},
                      Sight{"wide-1280x720", true, 1, 0b1111, 1, QSize(1280, 720)}));

}  // namespace
}  // namespace kestrel
