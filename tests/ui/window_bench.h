// The real windows over the simulated sensor, in swift time.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest/QTest>
#include <memory>
#include <string>
#include <vector>

#include "simulator/simulated_hardware.h"
#include "start/start.h"
#include "support/failing_usb_driver.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/reset_program.h"
#include "support/swift_clock.h"
#include "ui/main/start_windows.h"
#include "ui/parts/qt_seams.h"
#include "ui/pass_loop.h"
#include "ui/plot/picture_box.h"

namespace kestrel {

// The real windows over the simulated sensor, in swift time. Messages are recorded, files stay in
// memory.
class WindowBench : public ::testing::Test {
 protected:
  WindowBench()
      : hardware_(clock_, RunningMachine()),
        usb_(hardware_.Adapter()),
        core_({clock_, loop_, pointer_, messages_, files_, locale_, usb_, hardware_.Port(),
               hardware_.Service()}) {
    ResetProgram();
    files_.contents[files_.WorkingFolder() / "CommPort.cfg"] =
        "Interface = 2\nPort Address = 888\nProductNumber = 31407\n";
  }

  // Starts the program as its entry point does.
  frm1& Start() {
    windows_ = std::make_unique<QtStartWindows>(
        core_,
        SimulatorControl{.connect = [this] { ++simulatorConnected_; },
                         .isConnected = [this] { return simulatorConnected_ > 0; },
                         .plug =
                             [this](bool in) {
                               in ? hardware_.Adapter().Replug(0) : hardware_.Adapter().Unplug(0);
                             }},
        archive_);
    Main(core_, *windows_, {.quickStart = true, .interfaceWithoutConfig = kNoInterface});
    return Window();
  }
  frm1& Window() { return windows_->MainWindow(); }

  template <typename Control = QWidget>
  Control& Find(const char* name) {
    if (auto* control = Window().template findChild<Control*>(name)) return *control;
    for (QWidget* top : QApplication::topLevelWidgets()) {  // beside the main window
      auto* itself = dynamic_cast<Control*>(static_cast<QObject*>(top));
      if (itself != nullptr && top->objectName() == name) return *itself;
    }
    throw std::runtime_error(std::string("no control ") + name);
  }
  QString Text(const char* label) { return Find<QLabel>(label).text(); }
  QString BoxText(const char* box) { return Find<QLineEdit>(box).text(); }
  void Press(const char* button) { Find<QPushButton>(button).click(); }
  void Trigger(const char* item) { Find<QAction>(item).trigger(); }
  void Choose(const char* list, int index) { Find<QComboBox>(list).setCurrentIndex(index); }
  static std::vector<std::string> Items(const QComboBox& list) {
    std::vector<std::string> items;
    for (int i = 0; i < list.count(); ++i) items.push_back(list.itemText(i).toStdString());
    return items;
  }

  // One average: the shortest capture.
  void ChooseShortCaptures() { Choose("cbxFFTAvgs", 1); }

  // Does something as soon as a capture has been waited for this long.
  void During(int ms, std::function<void()> action) {
    QTimer::singleShot(ms, &Window(), std::move(action));
  }
  // Once a capture is under way.
  void DuringCapture(std::function<void()> action) {
    During(0, [this, action = std::move(action)] {
      Find<QPushButton>("cmdStart").text() == "Stop" ? action() : DuringCapture(action);
    });
  }

  SwiftClock clock_;
  SimulatedHardware hardware_;
  FailingUsbDriver usb_;
  PassLoop loop_{clock_};
  QtMousePointer pointer_;
  RecordingMessages messages_;
  MemoryFiles files_;
  FixedLocale locale_;
  Core core_;
  int simulatorConnected_ = 0;
  ArchiveChoice archive_{};  // none
  std::unique_ptr<QtStartWindows> windows_;
};

}  // namespace kestrel
