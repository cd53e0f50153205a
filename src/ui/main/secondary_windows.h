// The windows that the menus open.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <filesystem>
#include <string>

#include "app/handler_edge.h"
#include "connection/core.h"
#include "plot/band_overlay.h"
#include "ui/bands/frmAlarmSpectrum.h"
#include "ui/setup/frmSetups.h"
#include "ui/windows/frmALM_CTRL.h"
#include "ui/windows/frmCalibration.h"
#include "ui/windows/frmCommand.h"
#include "ui/windows/frmDIOGPIO.h"
#include "ui/windows/frmFileDir.h"
#include "ui/windows/frmManualReg.h"
#include "ui/windows/frmPort.h"
#include "ui/windows/frmRecInfo.h"
#include "ui/windows/frmUSBselect.h"

namespace kestrel {

// The windows that the main window's menus open. Each is made when first opened and kept.
class SecondaryWindows : public QObject {
  Q_OBJECT

 public:
  SecondaryWindows(Core& core, HandlerEdge& edge, BandOverlay& overlay, QWidget* mainWindow);
  // The windows go before what they use.
  ~SecondaryWindows() override;
  SecondaryWindows(const SecondaryWindows&) = delete;
  SecondaryWindows& operator=(const SecondaryWindows&) = delete;

  void OpenCommand();
  void OpenRecInfo();
  void OpenDataLog();
  void OpenAlarmControl();
  void OpenAlarmSpectrum();
  // Opened, it takes bands of another window over.
  void TakeOverBands(frmAlarmSpectrum::TakingOver taking);
  void OpenDioGpio();
  void OpenCalibration();
  void OpenRegisters();
  void OpenPort();
  void OpenUsb();
  void OpenSetups();

  // Where set-ups are kept, and the version that saves them.
  void KeepSetupsIn(const std::filesystem::path& folder, const std::string& program);

  // After every handler: what other windows changed shows.
  void Refresh();
  // Recalculates alarm thresholds that were given for another range.
  void KeepThresholdsInG();
  // Another sensor may be connected now.
  void ForgetSensor();
  // Whether the program may close. Asks the user about changes that would be lost.
  [[nodiscard]] bool MayClose();
  // The program is closing: what is under way ends.
  void CancelTransfers();

  // A command or a register written by hand may have changed what open windows show: they read
  // it again.
  void ReadAgain();

 signals:
  void InterfaceChosen();
  void BandRangeNoted(const QString& text);  // of thresholds of another range; "" for none
  void CommandSent(int bit);                 // in the commands' window; its wait is over
  void RegisterWritten(int row);             // by hand
  void SetupRestored();

 private:
  template <typename Window>
  Window& Made(QPointer<Window>& window);
  void NoteInterface();

  Core& core_;
  HandlerEdge& edge_;
  BandOverlay& overlay_;
  QWidget* mainWindow_;
  QPointer<frmCommand> command_;
  QPointer<frmRecInfo> recInfo_;
  QPointer<frmFileDir> dataLog_;  // while it is open
  QPointer<frmALM_CTRL> alarmControl_;
  QPointer<frmAlarmSpectrum> alarmSpectrum_;
  QPointer<frmDIOGPIO> dioGpio_;
  QPointer<frmCalibration> calibration_;
  QPointer<frmManualReg> registers_;
  QPointer<frmPort> port_;
  QPointer<frmUSBselect> usb_;
  QPointer<frmSetups> setups_;
  std::filesystem::path setupFolder_;
  std::string program_;
};

}  // namespace kestrel
