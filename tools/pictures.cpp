// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// Draws the documents' pictures from the real main window over the simulated sensor:
// kestrel_pictures FILE MODE [dark]. Sharpness follows QT_SCALE_FACTOR.

#include <QApplication>
#include <QComboBox>
#include <QPixmap>
#include <QPushButton>
#include <QString>
#include <cstdio>
#include <cstring>

#include "app/start.h"
#include "platform/linux/system_clock.h"
#include "platform/linux/system_files.h"
#include "platform/linux/system_locale.h"
#include "simulator/simulated_hardware.h"
#include "support/dark_palette.h"
#include "ui/qt_event_loop.h"
#include "ui/qt_seams.h"
#include "ui/start_windows.h"

int main(int argc, char** argv) {
  using namespace kestrel;
  if (argc < 3) {
    std::fprintf(stderr, "usage: kestrel_pictures FILE MODE [dark]\n");
    return 2;
  }
  const QApplication application(argc, argv);
  if (argc > 3 && std::strcmp(argv[3], "dark") == 0) QApplication::setPalette(DarkPalette());
  SystemClock clock;
  QtEventLoop loop;
  QtMousePointer pointer;
  ConsoleMessages messages;
  SystemFiles files;
  SystemLocale locale;
  SimulatedHardware hardware(clock, RunningMachine());
  Core core({clock, loop, pointer, messages, files, locale, hardware.Adapter(), hardware.Port(),
             hardware.Service()});
  QtStartWindows windows(core, [] {});
  Main(core, windows, {.quickStart = true, .interfaceWithoutConfig = kUsbAdapter});
  frm1& window = windows.MainWindow();
  auto* mode = window.findChild<QComboBox*>("cbxRecMode");
  mode->setCurrentIndex(mode->findText(argv[2]));
  window.findChild<QPushButton*>("cmdStart")->click();
  if (std::strcmp(argv[2], "Manual Time") == 0) {
    window.findChild<QPushButton*>("cmdPlotScale")->click();  // 1 -> 0.5, then on round the ring
    for (int step = 0; step < 8; ++step) window.findChild<QPushButton*>("cmdPlotScale")->click();
  }
  return window.grab().save(argv[1]) ? 0 : 1;
}
