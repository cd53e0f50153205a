// Random use of everything that can be clicked.
// SPDX-License-Identifier: MIT
// Random use of everything that can be clicked. Whatever is done, the program goes on, every frame
// is one that the sensor knows, and no box shows without a cause.

#include "ui/random_use_bench.h"

namespace kestrel {
namespace {

class RandomClicks : public RandomUseBench, public testing::WithParamInterface<unsigned> {
 protected:
  void CheckFrames() {
    for (const int frame : frames) {
      const int address = frame >> 8 & 0x7F;
      const bool stops = frame == 0xE8E8;
      EXPECT_TRUE(stops || address <= 0x77) << std::hex << frame;
    }
    frames.clear();
  }
  std::vector<QWidget*> OfTheEditor() {
    std::vector<QWidget*> widgets = Clickable();
    std::erase_if(widgets, [](const QWidget* widget) {
      return widget->window()->objectName() != "frmAlarmSpectrum";
    });
    return widgets;
  }
  // Windows that tell of a file being read, and are still there.
  static int ReadingWindows() {
    int count = 0;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "frmMsg" && window->isVisible()) ++count;
    }
    return count;
  }
};

TEST_P(RandomClicks, TheProgramGoesOn) {
  Random random(GetParam());
  loop_.Hurry();
  Start();
  ChooseShortCaptures();
  for (int step = 0; step < 150; ++step) {
    if (random.OneIn(6)) OpenSomething(random);
    std::vector<QWidget*> widgets = Clickable();
    ASSERT_FALSE(widgets.empty());
    QWidget* widget = random.Of(widgets);
    SCOPED_TRACE(widget->objectName().toStdString() + " at step " + std::to_string(step));
    Click(widget, random);
    QApplication::processEvents();
    CheckFrames();
    for (const std::string& text : messages_.Texts()) EXPECT_TRUE(HasACause(text)) << text;
    messages_.Clear();
    if (!Window().isVisible()) FAIL() << "the main window is gone";
  }
}

TEST_P(RandomClicks, TheAlarmEditorGoesOnWhateverIsLoadedMeanwhile) {
  Random random(GetParam());
  loop_.Hurry();
  Start();
  ChooseShortCaptures();
  for (int step = 0; step < 60; ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    Trigger("mnuAlarmSpectrum");
    Settle();
    if (random.OneIn(8)) Choose("cbxSignalRange", random.Below(4));
    std::vector<QWidget*> widgets = OfTheEditor();
    if (widgets.empty()) continue;
    QWidget* load = Find<QDialog>("frmAlarmSpectrum").findChild<QPushButton*>("cmdReadFile");
    QWidget* widget = load->isEnabled() && random.OneIn(2) ? load : random.Of(widgets);
    SCOPED_TRACE(widget->objectName().toStdString());
    Click(widget, random);
    QApplication::processEvents();
    EXPECT_EQ(ReadingWindows(), 0);
    CheckFrames();
    for (const std::string& text : messages_.Texts()) EXPECT_TRUE(HasACause(text)) << text;
    messages_.Clear();
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomClicks, testing::ValuesIn(Seeds(6)));

}  // namespace
}  // namespace kestrel
