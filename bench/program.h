// The program over the simulated sensor, as its entry point builds it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QWindow>
#include <algorithm>
#include <vector>

#include "platform/linux/system_clock.h"
#include "platform/linux/system_locale.h"
#include "platform/system_files.h"
#include "start/start.h"
#include "station/sensor_road.h"
#include "ui/main/start_windows.h"
#include "ui/parts/fit_screen.h"
#include "ui/parts/qt_event_loop.h"
#include "ui/parts/qt_seams.h"

namespace kestrel {

inline double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

inline void Expose(QWidget& window) {
  while (window.windowHandle() == nullptr || !window.windowHandle()->isExposed()) {
    QApplication::processEvents(QEventLoop::AllEvents, 5);
  }
  QApplication::processEvents();
}

// The program over the simulated sensor, as its entry point builds it.
class Program {
 public:
  Program() : Program(RunningMachine(), nullptr) {}

  // With other files than the system's where they are given.
  Program(const Scenario& scenario, Files* files, const ArchiveChoice& archive = {},
          const WatchChoice& watch = {})
      : road_({clock_,
               loop_,
               pointer_,
               messages_,
               files != nullptr ? *files : files_,
               locale_,
               {nullptr, nullptr, nullptr}}),
        windows_(road_.core, ControlOf(road_, scenario), archive, watch) {
    road_.Simulate(scenario);
    AssumeEndlessScreen();  // the one that the toolkit makes up is smaller than any real one
    Main(road_.core, windows_, {.quickStart = true, .interfaceWithoutConfig = kUsbAdapter});
  }

  frm1& Window() { return windows_.MainWindow(); }
  void Choose(const char* list, int index) {
    Window().findChild<QComboBox*>(list)->setCurrentIndex(index);
  }
  void Unplug() { road_.Plug(false); }
  void Press(const char* button) { Window().findChild<QPushButton*>(button)->click(); }

 private:
  SystemClock clock_;
  QtEventLoop loop_;
  QtMousePointer pointer_;
  ConsoleMessages messages_;
  SystemFiles files_;
  SystemLocale locale_;
  SensorRoad road_;
  QtStartWindows windows_;
};

}  // namespace kestrel
