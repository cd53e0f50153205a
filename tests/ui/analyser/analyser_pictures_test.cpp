// Pictures of the whole window, light and dark, at two pixel ratios, beside approved ones.
// SPDX-License-Identifier: MIT
#include <ctime>
#include <ostream>

#include "support/memory_files.h"
#include "ui/analyser/no_host.h"
#include "ui/approved_picture.h"
#include "ui/chart/look.h"
#include "ui/made_up_records.h"
#include "ui/parts/clear_style.h"
#include "ui/rendering.h"

namespace kestrel {
namespace {

struct Sight {
  const char* name;
  study::View view;
  bool isStacked;
  bool isDark;
  double ratio;
};

// The name alone, the same in every run.
void PrintTo(const Sight& sight, std::ostream* out) {
  *out << sight.name;
}

// Local times the same everywhere.
class InUtc {
 public:
  InUtc() { Set("UTC"); }
  ~InUtc() { before_.isNull() ? static_cast<void>(qunsetenv("TZ")) : Set(before_); }
  InUtc(const InUtc&) = delete;
  InUtc& operator=(const InUtc&) = delete;

 private:
  static void Set(const QByteArray& zone) {
    qputenv("TZ", zone);
    tzset();
  }
  QByteArray before_ = qgetenv("TZ");
};

class AnalyserPictures : public ::testing::TestWithParam<Sight> {
 protected:
  ~AnalyserPictures() override {
    ApplyTheme(Theme::System);
    QApplication::setFont(before_);
  }

  AnalyserPictures() { ClearStyle::Use(); }

  InUtc zone_;
  QFont before_ = QApplication::font();
};

TEST_P(AnalyserPictures, LookAsApproved) {
  const Sight& sight = GetParam();
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPixelSize(12);
  QApplication::setFont(font);
  ApplyTheme(sight.isDark ? Theme::Dark : Theme::Light);
  MemoryFiles files;
  frmAnalyser window(NoHost(files));
  window.SetSensor("Simulated sensor", {});
  for (int i = 0; i < 12; ++i) {
    TakeRecord(window.Model(), MadeUpSpectrum(10 * i, {{42, 700 + 20 * i}, {84, 300}, {126, 90}}));
  }
  window.Model().Change([&](study::StudyChoice& choice) {
    choice.view = sight.view;
    choice.up = study::Scale::Logarithmic;
    choice.focus = Axis::Z;
    choice.stacked = sight.isStacked;
  });
  window.Area().Commands().CarryOut(PlotCommand::CursorHarmonic);
  window.resize(1280, 720);
  window.show();
  QApplication::processEvents();
  const QString name = QStringLiteral("%1-%2-%3.png")
                           .arg(QLatin1String(sight.name), sight.isDark ? "dark" : "light")
                           .arg(sight.ratio);
  ExpectApproved(RenderOf(window, sight.ratio), name, sight.ratio, KESTREL_APPROVED);
}

using study::View;
INSTANTIATE_TEST_SUITE_P(All, AnalyserPictures,
                         ::testing::Values(Sight{"spectrum", View::Spectrum, false, false, 1},
                                           Sight{"spectrum", View::Spectrum, false, true, 2},
                                           Sight{"stacked", View::Spectrum, true, true, 1},
                                           Sight{"stacked", View::Spectrum, true, false, 2},
                                           Sight{"waterfall", View::Waterfall, false, false, 1},
                                           Sight{"waterfall", View::Waterfall, false, true, 2}));

}  // namespace
}  // namespace kestrel
