// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// Draws the documents' pictures from the real main window over the simulated sensor:
// kestrel_pictures FILE MODE [dark]. Sharpness follows QT_SCALE_FACTOR.

#include <QPixmap>
#include <QString>
#include <cstdio>
#include <cstring>

#include "../bench/program.h"
#include "support/dark_palette.h"

int main(int argc, char** argv) {
  using namespace kestrel;
  if (argc < 3) {
    std::fprintf(stderr, "usage: kestrel_pictures FILE MODE [dark]\n");
    return 2;
  }
  const QApplication application(argc, argv);
  if (argc > 3 && std::strcmp(argv[3], "dark") == 0) QApplication::setPalette(DarkPalette());
  Program program;
  auto* mode = program.Window().findChild<QComboBox*>("cbxRecMode");
  mode->setCurrentIndex(mode->findText(argv[2]));
  program.Press("cmdStart");
  auto* scale = program.Window().findChild<QPushButton*>("cmdPlotScale");
  const QString wanted =
      mode->currentText() == "Manual Time" ? "2" : "1";  // g, the record fills it
  while (scale->text() != wanted) scale->click();
  return program.Window().grab().save(argv[1]) ? 0 : 1;
}
