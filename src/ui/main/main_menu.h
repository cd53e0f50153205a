// The menu bar of the main window and its items.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QMainWindow>

namespace kestrel {

// The menu bar of the main window.
class MainMenu : public QObject {
 public:
  explicit MainMenu(QMainWindow& window);

  QAction* mnuDatalog;
  QAction* mnuKeepRecords;
  QAction* MnuExit;
  QAction* mnuParallel;
  QAction* mnuUsb;
  QAction* mnuSimulated;
  QAction* mnuFastReadout;
  QAction* mnuCommand;
  QAction* mnuRecInfo;
  QAction* mnuAlarmCtrl;
  QAction* mnuAlarmSpectrum;
  QAction* mnuDIOGPIO;
  QAction* MnuCal;
  QAction* mnuRegisters;
  QAction* mnuSetups;
  QAction* mnuAnalyser;
  QAction* mnuRepeat;
  QAction* mnuRepeatStop;
  QAction* mnu31407;
  QAction* mnuGuide;
  QAction* mnuAbout;
  QAction* mnuUnplug;

  // The menu of the simulated sensor.
  void ShowDebug(bool shown) { debug_->setVisible(shown); }

 private:
  QAction* debug_;
};

}  // namespace kestrel
