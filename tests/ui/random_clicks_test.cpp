// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// Random use of everything that can be clicked. Whatever is done, the program goes on, every frame
// is one that the sensor knows, and no box shows without a cause.

#include <QAbstractButton>
#include <random>
#include <set>

#include "all_windows_bench.h"

namespace kestrel {
namespace {

class RandomClicks : public AllWindowsBench, public testing::WithParamInterface<unsigned> {
 protected:
  // Boxes that have their cause in what a click can do: nothing is typed here.
  static bool HasACause(const std::string& text) {
    for (const char* cause :
         {"Error: Index must be between 0 and 15   idx = -1",  // no function chosen
          "Please select an interface before taking data",
          "Please Select a Buffer first",     // no board selected
          "the file cannot be read",          // no alarm file chosen
          "Error while writting Alarm File",  // nor a name for one
          "Save: nothing has been sent yet.", "Writing ", "Value to write", "frame", "Frame",
          "Data log"}) {
      if (text.find(cause) != std::string::npos) return true;
    }
    return false;
  }

  // What opens the system's own dialogs, or ends the program.
  static bool IsLeftOut(const QString& name) {
    static const std::set<QString> kLeftOut{"MnuExit", "mnuAbout", "cmdPrint"};
    return kLeftOut.contains(name);
  }

  std::vector<QWidget*> Clickable() {
    std::vector<QWidget*> found;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      for (auto* button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->isEnabled() && !IsLeftOut(button->objectName()) &&
            !button->objectName().startsWith("qt_")) {
          found.push_back(button);
        }
      }
      for (auto* list : window->findChildren<QComboBox*>()) {
        if (list->isVisible() && list->isEnabled() && list->count() > 0) found.push_back(list);
      }
    }
    return found;
  }

  void Click(QWidget* widget, std::mt19937& random) {
    if (auto* list = qobject_cast<QComboBox*>(widget)) {
      // Few averages, or a capture takes long.
      const int most = list->objectName() == "cbxFFTAvgs" ? 3 : list->count();
      list->setCurrentIndex(static_cast<int>(random() % static_cast<unsigned>(most)));
    } else {
      static_cast<QAbstractButton*>(widget)->click();
    }
  }

  void OpenSomething(std::mt19937& random) {
    const Item& item = kItems[random() % kItems.size()];
    if (QApplication::activeModalWidget() == nullptr) Trigger(item.action);
  }

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
  std::mt19937 random(GetParam());
  Start();
  ChooseShortCaptures();
  for (int step = 0; step < 150; ++step) {
    if (random() % 6 == 0) OpenSomething(random);
    const std::vector<QWidget*> widgets = Clickable();
    ASSERT_FALSE(widgets.empty());
    QWidget* widget = widgets[random() % widgets.size()];
    SCOPED_TRACE(widget->objectName().toStdString() + " at step " + std::to_string(step));
    Click(widget, random);
    QApplication::processEvents();
    CheckFrames();
    for (const std::string& text : messages_.Texts()) EXPECT_TRUE(HasACause(text)) << text;
    messages_.Clear();
    if (!Window().isVisible()) FAIL() << "the main window is gone";
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomClicks, testing::Range(1U, 7U));

}  // namespace
}  // namespace kestrel
