// Captures taken without a screen, with pictures and data files.
// SPDX-License-Identifier: MIT
#include "ui/main/demo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <cstdio>

namespace kestrel {
namespace {

constexpr int kAlarmDemoCaptures = 10;

bool SavePicture(frm1& window, const QString& picture) {
  if (!window.grab().save(picture)) {
    std::fprintf(stderr, "The picture %s could not be written.\n", qPrintable(picture));
    return false;
  }
  std::printf("  picture    %s\n", qPrintable(QDir(picture).absolutePath()));
  return true;
}

// One capture; returns whether it ended with a new data file.
bool CaptureToFile(frm1& window) {
  std::fflush(stdout);
  const std::filesystem::path before = window.Log().LastFile();
  window.findChild<QPushButton*>("cmdStart")->click();  // returns when the capture is complete
  if (window.Log().LastFile() != before) return true;
  std::fprintf(stderr, "No data file was written.\n");
  return false;
}

bool CaptureInMode(frm1& window, int recMode, const QString& folder) {
  auto* mode = window.findChild<QComboBox*>("cbxRecMode");
  std::printf("Capturing in mode \"%s\"...\n", qPrintable(mode->itemText(recMode)));
  mode->setCurrentIndex(recMode);
  const QString name = QString(mode->itemText(recMode)).toLower().replace(' ', '_');
  if (!CaptureToFile(window) || !SavePicture(window, folder + "/" + name + ".png")) return false;
  std::printf("  data file  %s\n", window.Log().LastFile().string().c_str());
  return true;
}

// "X None, Y None, Z Warning in band 3".
QString AlarmStateText(frm1& window) {
  QStringList axes;
  for (int axis = 1; axis <= 3; ++axis) {
    const auto text = [&](const char* box) {
      return window.findChild<QLineEdit*>(QString("%1_%2").arg(box).arg(axis))->text().trimmed();
    };
    const QString alarm = text("txtAlarm");
    axes << QString(QChar('W' + axis)) + " " + alarm +
                (alarm == "None" ? "" : " in band " + text("txtBand"));
  }
  return axes.join(", ");
}

void SwitchLogOn(frm1& window) {
  auto* log = window.findChild<QCheckBox*>("ckDataLog");
  if (!log->isChecked()) log->click();
}

}  // namespace

int RunDemo(frm1& window, const QString& folder) {
  SwitchLogOn(window);
  const int modes = window.findChild<QComboBox*>("cbxRecMode")->count();
  for (int recMode = 0; recMode < modes; ++recMode) {
    if (!CaptureInMode(window, recMode, folder)) return 1;
  }
  return 0;
}

int RunAlarmDemo(frm1& window, const QString& folder) {
  SwitchLogOn(window);
  QString before;
  for (int number = 1; number <= kAlarmDemoCaptures; ++number) {
    if (!CaptureToFile(window)) return 1;
    const QString state = AlarmStateText(window);
    std::printf("Capture %d: %s\n", number, qPrintable(state));
    if (state == before) continue;
    before = state;
    if (!SavePicture(window, QString("%1/capture_%2.png").arg(folder).arg(number))) return 1;
  }
  std::printf("Data files of all captures are in %s\n",
              window.Log().LastFile().parent_path().string().c_str());
  return 0;
}

}  // namespace kestrel
