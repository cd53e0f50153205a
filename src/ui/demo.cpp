// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/demo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QPixmap>
#include <QPushButton>
#include <cstdio>

namespace kestrel {
namespace {

// Returns whether the capture ended with a new data file and a saved picture.
bool Capture(frm1& window, int recMode, const QString& folder) {
  auto* mode = window.findChild<QComboBox*>("cbxRecMode");
  const std::filesystem::path before = window.Log().LastFile();
  std::printf("Capturing in mode \"%s\"...\n", qPrintable(mode->itemText(recMode)));
  std::fflush(stdout);
  mode->setCurrentIndex(recMode);
  window.findChild<QPushButton*>("cmdStart")->click();  // returns when the capture is complete
  const std::filesystem::path file = window.Log().LastFile();
  if (file == before) {
    std::fprintf(stderr, "No data file was written.\n");
    return false;
  }
  const QString picture =
      QString("%1/%2.png")
          .arg(folder, QString(mode->itemText(recMode)).toLower().replace(' ', '_'));
  if (!window.grab().save(picture)) {
    std::fprintf(stderr, "The picture %s could not be written.\n", qPrintable(picture));
    return false;
  }
  std::printf("  picture    %s\n  data file  %s\n", qPrintable(QDir(picture).absolutePath()),
              file.string().c_str());
  return true;
}

}  // namespace

int RunDemo(frm1& window, const QString& folder) {
  auto* log = window.findChild<QCheckBox*>("ckDataLog");
  if (!log->isChecked()) log->click();
  const int modes = window.findChild<QComboBox*>("cbxRecMode")->count();
  for (int recMode = 0; recMode < modes; ++recMode) {
    if (!Capture(window, recMode, folder)) return 1;
  }
  return 0;
}

}  // namespace kestrel
