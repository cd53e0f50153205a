// The program's logic over real back ends, from the start button down.
// SPDX-License-Identifier: MIT
#pragma once

#include "acquisition/desk.h"
#include "app/program_state.h"
#include "connection/core.h"
#include "connection/init_interface.h"
#include "device/rec_ctrl.h"
#include "device/register_models.h"
#include "platform/hardware_switch.h"
#include "regmap/register_table.h"
#include "support/fake_band_overlay.h"
#include "support/fake_clock.h"
#include "support/fake_cursor_view.h"
#include "support/fake_log_view.h"
#include "support/fake_main_views.h"
#include "support/fake_plot_views.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_program.h"
#include "support/scripted_loop.h"
#include "support/unused_hardware.h"

namespace kestrel {

// The program's logic from the start button down, over any hardware.
class Program {
 public:
  // Begins with the interface of this type, at this port address.
  Program(const Hardware& hardware, FakeClock& clock, std::int16_t interface = kUsbAdapter,
          std::int16_t portAddress = 0)
      : loop_(clock),
        core({clock, loop_, pointer_, messages, files, locale_, *hardware.usb, *hardware.port,
              *hardware.driverService}) {
    ResetProgram();
    SetColours();
    core.delay.SkipCalibration();
    Given(PortAddress) = portAddress;
    Connect(interface);
    InitRegisterTable(core.registers);
    views_.recMode = 0;
    gRecCtrl->RecModeCode(0);
    gRecCtrl->WriteRecCtrl();
    gRecCtrl->ReadRecCtrl();
  }
  ~Program() { ResetProgram(); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Prepares the interface as the program does when one is selected.
  void Connect(std::int16_t interface = kUsbAdapter) {
    core.registers.Use(interface);
    InitInterface(core);
  }
  void Capture() { desk_.cycle.cmdStart_Click(); }
  // Reads what is in the sensor's buffers, and nothing else.
  bool ReadOut(RecordKind kind) {
    desk_.readout.Expect(kind);
    readoutView_.autoPlot = false;
    return desk_.readout.ReadCaptureBuffer();
  }
  FastReadout& Fast() { return desk_.readout.Fast(); }
  [[nodiscard]] bool Idle() const {
    return views_.caption == "Start" && !desk_.cycle.Running() && !desk_.readout.Busy();
  }
  [[nodiscard]] int Averages() { return core.registers.ReadReg(row::FFT_AVG), RegValue; }

  RecordingMessages messages;
  MemoryFiles files;

 private:
  ScriptedLoop loop_;
  RecordingPointer pointer_;
  FixedLocale locale_;

 public:
  Core core;

 private:
  Journal journal_;
  FakePlotView plotView_{journal_};
  FakeAlarmView alarmView_{journal_};
  FakeLogView logView_{journal_};
  FakeBandOverlayView bandView_{journal_, plotView_};
  FakeStatusView statusView_{journal_};
  FakeReadoutView readoutView_{journal_};
  FakeCaptureView views_{journal_, readoutView_};
  FakeSettingsView settingsView_;
  FakeCursorView cursorView_;
  Desk desk_{core,
             {alarmView_, plotView_, bandView_, statusView_, logView_, readoutView_, views_,
              settingsView_, cursorView_}};
};

}  // namespace kestrel
