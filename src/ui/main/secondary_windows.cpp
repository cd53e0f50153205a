// How each secondary window is opened, kept and refreshed.
// SPDX-License-Identifier: MIT
#include "ui/main/secondary_windows.h"

#include <array>

#include "ui/parts/fit_screen.h"

namespace kestrel {

SecondaryWindows::SecondaryWindows(Core& core, HandlerEdge& edge, BandOverlay& overlay,
                                   QWidget* mainWindow)
    : core_(core), edge_(edge), overlay_(overlay), mainWindow_(mainWindow) {}

SecondaryWindows::~SecondaryWindows() {
  overlay_.SetOwner(nullptr);
  const std::array<QWidget*, 11> windows{command_,       recInfo_, dataLog_,     alarmControl_,
                                         alarmSpectrum_, dioGpio_, calibration_, registers_,
                                         port_,          usb_,     setups_};
  for (const QWidget* window : windows) delete window;
}

template <typename Window>
Window& SecondaryWindows::Made(QPointer<Window>& window) {
  if (!window) window = new Window(core_, edge_, mainWindow_);
  return *window;
}

void SecondaryWindows::OpenCommand() {
  if (!command_) {
    connect(&Made(command_), &frmCommand::Sent, this, &SecondaryWindows::CommandSent);
  }
  command_->ShowInFront();
}

void SecondaryWindows::OpenRecInfo() {
  Made(recInfo_).ShowInFront();
}

// A dialog of its own for each edit, since Cancel goes back to what it began with. It leaves the
// main window alive: a capture must be stopped at any time.
void SecondaryWindows::OpenDataLog() {
  if (!dataLog_ || !dataLog_->isVisible()) {
    dataLog_ = new frmFileDir(core_, edge_, mainWindow_);
    FitScreen(*dataLog_);
  }
  dataLog_->show();
  dataLog_->raise();
  dataLog_->activateWindow();
}

void SecondaryWindows::OpenAlarmControl() {
  Made(alarmControl_).ShowInFront();
}

void SecondaryWindows::OpenAlarmSpectrum() {
  if (!alarmSpectrum_) {
    alarmSpectrum_ = new frmAlarmSpectrum(core_, edge_, overlay_, mainWindow_);
    overlay_.SetOwner(alarmSpectrum_);
    alarmSpectrum_->rangeNoted = [this](const std::string& text) {
      emit BandRangeNoted(QString::fromStdString(text));
    };
  }
  alarmSpectrum_->ShowInFront();
}

void SecondaryWindows::TakeOverBands(frmAlarmSpectrum::TakingOver taking) {
  OpenAlarmSpectrum();
  alarmSpectrum_->TakeOver(std::move(taking));
}

void SecondaryWindows::OpenDioGpio() {
  Made(dioGpio_).ShowInFront();
}

void SecondaryWindows::OpenCalibration() {
  Made(calibration_).ShowInFront();
}

void SecondaryWindows::OpenRegisters() {
  if (!registers_) {
    connect(&Made(registers_), &frmManualReg::Written, this, &SecondaryWindows::RegisterWritten);
  }
  registers_->ShowInFront();
}

void SecondaryWindows::OpenPort() {
  if (!port_) {
    connect(&Made(port_), &frmPort::InterfaceChosen, this, &SecondaryWindows::NoteInterface);
  }
  port_->ShowInFront();
}

void SecondaryWindows::OpenUsb() {
  if (!usb_) {
    connect(&Made(usb_), &frmUSBselect::InterfaceChosen, this, &SecondaryWindows::NoteInterface);
  }
  usb_->ShowInFront();
}

void SecondaryWindows::KeepSetupsIn(const std::filesystem::path& folder,
                                    const std::string& program) {
  setupFolder_ = folder;
  program_ = program;
}

void SecondaryWindows::OpenSetups() {
  if (!setups_) {
    setups_ = new frmSetups(core_, edge_, mainWindow_, setupFolder_, program_);
    connect(setups_, &frmSetups::Restored, this, &SecondaryWindows::SetupRestored);
  }
  setups_->ShowInFront();
}

void SecondaryWindows::NoteInterface() {
  ForgetSensor();
  emit InterfaceChosen();
}

void SecondaryWindows::Refresh() {
  if (dataLog_) dataLog_->ShowFileNumber();
  if (alarmSpectrum_) alarmSpectrum_->Refresh();
}

void SecondaryWindows::ReadAgain() {
  const std::array<SensorWindow*, 3> windows{alarmControl_, dioGpio_, calibration_};
  for (SensorWindow* window : windows) {
    if (window != nullptr && window->isVisible()) window->ReadAgain();
  }
  if (recInfo_ && recInfo_->isVisible()) recInfo_->Read_RecInfo();
}

void SecondaryWindows::ForgetSensor() {
  if (alarmSpectrum_) alarmSpectrum_->ForgetSensor();
  if (setups_) setups_->ForgetSensor();
}

void SecondaryWindows::KeepThresholdsInG() {
  if (alarmSpectrum_) alarmSpectrum_->KeepThresholdsInG();
}

bool SecondaryWindows::MayClose() {
  return !alarmSpectrum_ || alarmSpectrum_->MayBeLost();
}

void SecondaryWindows::CancelTransfers() {
  if (alarmSpectrum_) alarmSpectrum_->CancelTransfer();
  if (setups_) setups_->CancelTransfer();
}

}  // namespace kestrel
