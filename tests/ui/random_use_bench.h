// Everything that can be clicked, in any order.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QToolButton>
#include <set>
#include <string>
#include <vector>

#include "alarms/alarm_file.h"
#include "support/seeds.h"
#include "ui/all_windows_bench.h"

namespace kestrel {

// Everything that can be clicked, in any order.
class RandomUseBench : public AllWindowsBench {
 protected:
  RandomUseBench() {
    BandTable table;
    for (const int field : kBandFields) table(field, 2, 1) = 40 + field;
    const std::string text = AlarmFileText(table);
    const std::string header = text.substr(0, text.find("\r\n") + 2);
    files_.contents["/program/AlarmSpectrum_good.csv"] = text;
    files_.contents["/documents/AlarmSpectrum_few.csv"] = header + "0,1,5,9,1,2,3,4,5,6\r\n";
    files_.contents["/program/AlarmSpectrum_bad.csv"] = text + "0,2,x,0,0,0,0,0,0,0\r\n";
  }

  // Boxes that have their cause in what a click can do: nothing is typed here.
  static bool HasACause(const std::string& text) {
    for (const char* cause :
         {"Error: Index must be between 0 and 15   idx = -1",  // no function chosen
          "Please select an interface before taking data",
          "Please Select a Buffer first",     // no board selected
          "the file cannot be read",          // no alarm file chosen
          "Error while writting Alarm File",  // nor a name for one
          "AlarmSpectrum_bad.csv, line 26", "Save: nothing has been sent yet.", "Writing ",
          "Value to write", "frame", "Frame", "Data log"}) {
      if (text.find(cause) != std::string::npos) return true;
    }
    return false;
  }

  // What opens the system's own dialogs, or ends the program.
  static bool IsLeftOut(const QString& name) {
    static const std::set<QString> kLeftOut{"MnuExit", "mnuAbout", "cmdPrint", "cmdExport",
                                            "cmdImport"};
    return kLeftOut.contains(name);
  }

  // A menu that opens waits for its user.
  static bool HasMenu(const QAbstractButton& button) {
    const auto* tool = qobject_cast<const QToolButton*>(&button);
    return tool != nullptr && tool->menu() != nullptr;
  }

  std::vector<QWidget*> Clickable() {
    std::vector<QWidget*> found;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      for (auto* button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->isEnabled() && !IsLeftOut(button->objectName()) &&
            !button->objectName().startsWith("qt_") && !HasMenu(*button)) {
          found.push_back(button);
        }
      }
      for (auto* list : window->findChildren<QComboBox*>()) {
        if (list->isVisible() && list->isEnabled() && list->count() > 0) found.push_back(list);
      }
    }
    return found;
  }

  void Click(QWidget* widget, Random& random) {
    if (auto* list = qobject_cast<QComboBox*>(widget)) {
      // Few averages, or a capture takes long.
      const int most = list->objectName() == "cbxFFTAvgs" ? 3 : list->count();
      list->setCurrentIndex(random.Below(most));
    } else if (widget->objectName() == "cmdReadFile") {
      LoadAnAlarmFile(*static_cast<QAbstractButton*>(widget), random);
    } else {
      static_cast<QAbstractButton*>(widget)->click();
    }
  }

  // Chooses one of some alarm files and loads it, half the time pressing again while the window
  // that tells of the reading comes up.
  void LoadAnAlarmFile(QAbstractButton& load, Random& random) {
    static const std::vector<QString> kNames{"good", "few", "bad", "none"};
    auto* names = load.window()->findChild<QComboBox*>("cbxAfiles");
    names->setEditText("AlarmSpectrum_" + random.Of(kNames) + ".csv");
    if (random.OneIn(2)) QTimer::singleShot(0, &load, [&load] { load.click(); });
    load.click();
  }

  void OpenSomething(Random& random) {
    const Item& item = random.Of(kItems);
    if (QApplication::activeModalWidget() == nullptr) Trigger(item.action);
  }
};

}  // namespace kestrel
