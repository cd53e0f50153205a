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

INSTANTIATE_TEST_SUITE_P(Seeds, RandomClicks, testing::ValuesIn(Seeds(6)));

}  // namespace
}  // namespace kestrel
