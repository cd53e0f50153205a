// The windows of the start, and a start with faults.
// SPDX-License-Identifier: MIT
#include "ui/main/start_windows.h"

#include "numeric/runtime_error.h"
#include "support/faulty_seams.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using StartWindowsTest = WindowBench;

TEST_F(StartWindowsTest, TheLoadingWindowIsPaintedBeforeTheTrialsBegin) {
  class Watch : public SwiftClock {
   public:
    void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) override {
      for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() != "frmMsg") continue;
        visible = window->isVisible();
        caption = window->windowTitle();
        text = window->findChild<QPlainTextEdit*>("txtMsg")->toPlainText();
      }
      SwiftClock::RunEmptyLoop(passes, iterations);
    }
    bool visible = false;
    QString caption;
    QString text;
  } clock;
  Core core({clock, loop_, pointer_, messages_, files_, locale_, usb_, hardware_.Port(),
             hardware_.Service()});
  QtStartWindows windows(core, {});
  Main(core, windows, {});
  EXPECT_TRUE(clock.visible);
  EXPECT_EQ(clock.caption, "Kestrel evaluation program  ");
  EXPECT_EQ(clock.text, "\n  LOADING...\n\n  Setting up Delay function\n\n  3 second trial delay.");
  EXPECT_TRUE(windows.MainWindow().isVisible());
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() != "frmMsg") continue;
    EXPECT_FALSE(window->isVisible());
  }
  EXPECT_NE(DelayReport.find("10uS Delay Count"), std::string::npos);
}

// The files, the locale, the clock and the sensor that the window asks while it comes up included.
TEST_F(StartWindowsTest, TheMainWindowComesUpWhateverCallOfItsSurroundingsFails) {
  bool met = true;
  int number = 1;
  for (; met; ++number) {
    ResetProgram();
    FaultySeams faulty(core_.seams);
    faulty.Count().FaultAt(number, [] { throw RuntimeError("broken"); });
    Core core(faulty.All());
    QtStartWindows windows(core, {});
    EXPECT_NO_THROW(Main(core, windows, {.quickStart = true})) << faulty.Count().Place();
    met = faulty.Count().Met();
    faulty.Count().FaultAt(0, {});
    if (HasFailure()) break;
    EXPECT_TRUE(windows.MainWindow().isVisible()) << number;
  }
  EXPECT_GT(number, 50) << "calls, each of which failed once";
}

TEST_F(StartWindowsTest, AQuickStartShowsTheMainWindowAlone) {
  Start();
  EXPECT_TRUE(Window().isVisible());
  for (QWidget* window : QApplication::topLevelWidgets()) {
    EXPECT_NE(window->objectName(), "frmMsg");
  }
}

}  // namespace
}  // namespace kestrel
