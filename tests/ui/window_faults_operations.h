// The list of everything that the windows do with the sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "regmap/register_table.h"
#include "support/given.h"
#include "ui/window_faults_bench.h"

namespace kestrel {

using Operations = std::vector<Operation>;
using Bench = FaultBench;

inline Operation Clicking(const std::string& window, const char* item, const char* button) {
  return {window + "." + button, [=](Bench& bench) { bench.Click(window, button); },
          [=](Bench& bench) { bench.OpenWindow(item); }};
}
inline Operation Opening(const char* window, const char* item) {
  return {std::string("opening ") + window, [=](Bench& bench) { bench.OpenWindow(item); }};
}

// Another item of one of the main window's lists than the sensor starts with.
inline Operation Choosing(const char* list, int index) {
  return {list, [=](Bench& bench) { bench.Choose(list, index); }};
}

inline Operations RecordSettingOperations() {
  Operations all{Choosing("cbxRecMode", 2), Choosing("cbxWindow", 2), Choosing("cbxSignalRange", 1),
                 Choosing("cbxStorage", 1), Choosing("cbxUnits", 1),  Choosing("cbxInterval", 10),
                 Choosing("cbxFFTAvgs", 5), Choosing("cbxRecPntr", 3)};
  for (const char* box : {"ckBW0", "ckBW1", "ckBW2", "ckBW3", "ckPowerDown"}) {
    all.push_back({box, [=](Bench& bench) { bench.Click("frm1", box); }});
  }
  return all;
}

inline Operations StatusOperations() {
  Operations all{{"CmdReadStatus beside the alarm editor",
                  [](Bench& bench) { bench.Click("frm1", "CmdReadStatus"); },
                  [](Bench& bench) { bench.OpenWindow("mnuAlarmSpectrum"); }}};
  for (const char* button : {"CmdReadStatus", "cmdClearStatus"}) {
    all.push_back({button, [=](Bench& bench) { bench.Click("frm1", button); }});
  }
  all.push_back({"ckDataLog", [](Bench& bench) { bench.Click("frm1", "ckDataLog"); },
                 [](Bench& bench) {
                   if (bench.Find<QCheckBox>("ckDataLog").isChecked())
                     bench.Click("frm1", "ckDataLog");
                 }});
  all.push_back({"mnu31407", [](Bench& bench) { bench.OpenWindow("mnu31407"); }});
  return all;
}

inline Operation Capturing(const char* name, int mode, bool autoPlot) {
  return {name, [](Bench& bench) { bench.Press("cmdStart"); },
          [=](Bench& bench) {
            bench.Choose("cbxFFTAvgs", 1);
            bench.Choose("cbxRecMode", mode);
            bench.Find<QCheckBox>("ckAutoPlot").setChecked(autoPlot);
          }};
}

inline Operations CaptureOperations() {
  return {Capturing("Manual", 0, true), Capturing("Timer", 1, true), Capturing("Time", 2, true),
          Capturing("WithoutPlot", 0, false)};
}

// Takes a capture and stops it as soon as it is waited for.
inline void CaptureAndStop(Bench& bench) {
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, [&] {
    if (bench.Find<QPushButton>("cmdStart").text() != "Stop") return;
    user.stop();
    bench.Press("cmdStart");
  });
  user.start(0);
  bench.Press("cmdStart");
}

inline Operations StopOperations() {
  return {{"stopping", CaptureAndStop, [](Bench& bench) {
             bench.Choose("cbxFFTAvgs", 20);
             bench.Find<QCheckBox>("ckAutoPlot").setChecked(false);
           }}};
}

inline Operations ReadoutOperations() {
  const auto open = [](Bench& bench) { bench.Choose("cbxFFTAvgs", 1); };
  return {{"cmdReadBuffer", [](Bench& bench) { bench.Press("cmdReadBuffer"); }, open},
          {"cmdGetRecord", [](Bench& bench) { bench.Press("cmdGetRecord"); }, open}};
}

// What looks for the board itself.
inline Operations SearchOperations() {
  const auto lose = [](Bench& bench) {
    Given(UsbPresent) = false;
    bench.Press("CmdReadStatus");
  };
  const auto nothing = [](Bench&) {};
  return {
      {"cmdLostRetry",
       [](Bench& bench) { bench.Find<QPushButton>("cmdLostRetry").click(); },
       lose,
       {},
       true},
      {"mnuSimulated", [](Bench& bench) { bench.OpenWindow("mnuSimulated"); }, nothing, {}, true},
      {"cmdStart of a lost sensor",
       [](Bench& bench) { bench.Press("cmdStart"); },
       [=](Bench& bench) {
         bench.Choose("cbxFFTAvgs", 1);
         bench.Find<QCheckBox>("ckAutoPlot").setChecked(false);
         lose(bench);
       },
       {},
       true},
      {"cmdReadBuffer of a lost sensor",
       [](Bench& bench) { bench.Press("cmdReadBuffer"); },
       lose,
       {},
       true}};
}

inline Operations AlarmSpectrumOperations() {
  Operations all{Opening("frmAlarmSpectrum", "mnuAlarmSpectrum")};
  for (const char* button : {"cmdReadAll", "cmdWriteAll", "cmdClearAll"}) {
    all.push_back(Clicking("frmAlarmSpectrum", "mnuAlarmSpectrum", button));
  }
  all.push_back({"Load file, then Write all",
                 [](Bench& bench) {
                   bench.ChooseAlarmFile();
                   bench.Click("frmAlarmSpectrum", "cmdReadFile");
                   bench.Click("frmAlarmSpectrum", "cmdWriteAll");
                 },
                 [](Bench& bench) { bench.OpenWindow("mnuAlarmSpectrum"); }});
  return all;
}

inline Operations AlarmControlOperations() {
  Operations all{Opening("frmALM_CTRL", "mnuAlarmCtrl")};
  for (const char* control :
       {"cmdRead", "ckDIOenable", "ckXenable", "ckYenable", "ckZenable", "ckSystemAlarmEnable",
        "opGreaterThan", "opLessThan", "opSupply", "opTemperature"}) {
    all.push_back(Clicking("frmALM_CTRL", "mnuAlarmCtrl", control));
  }
  const auto open = [](Bench& bench) { bench.OpenWindow("mnuAlarmCtrl"); };
  all.push_back(
      {"cbxResponseDelay",
       [](Bench& bench) { bench.List("frmALM_CTRL", "cbxResponseDelay").setCurrentIndex(7); },
       open});
  all.push_back(
      {"txtSAmag", [](Bench& bench) { bench.Type("frmALM_CTRL", "txtSAmag", "3.3"); }, open});
  return all;
}

inline Operations RegisterOperations() {
  const auto choose = [](Bench& bench) {
    bench.OpenWindow("mnuRegisters");
    bench.List("frmManualReg", "cmboRegister").setCurrentIndex(row::FFT_AVG);
    bench.Type("frmManualReg", "txtDataWrite", "23");
  };
  Operations all{Opening("frmManualReg", "mnuRegisters"),
                 {"choosing a register",
                  [](Bench& bench) {
                    bench.List("frmManualReg", "cmboRegister").setCurrentIndex(row::STATUS);
                  },
                  choose,
                  {"txtRegHex", "txtRegVal", "lblReadBits", "tblFields"}}};
  for (const char* button : {"cmdRead", "cmdWrite", "cmdReadAllReg", "cmdUpdateFlash"}) {
    all.push_back({button, [=](Bench& bench) { bench.Click("frmManualReg", button); }, choose});
  }
  return all;
}

inline Operations DioOperations() {
  Operations all{Opening("frmDIOGPIO", "mnuDIOGPIO")};
  for (const char* control : {"cmdRead", "opFuncAlarm1", "OpFuncCapTrig1", "opActiveLow1",
                              "OpFuncGPIO2", "OpFuncBusy2", "OpActiveLow2"}) {
    all.push_back(Clicking("frmDIOGPIO", "mnuDIOGPIO", control));
  }
  for (const char* control : {"opGOutput1", "opGLevelHigh1"}) {
    all.push_back({control, [=](Bench& bench) { bench.Click("frmDIOGPIO", control); },
                   [](Bench& bench) {
                     bench.OpenWindow("mnuDIOGPIO");
                     bench.Click("frmDIOGPIO", "opFuncGPIO1");
                   }});
  }
  return all;
}

inline Operations CalibrationOperations() {
  Operations all{Opening("frmCalibration", "MnuCal")};
  for (const char* button : {"cmdRead", "cmdAutoNull", "cmdFlashUpdate"}) {
    all.push_back(Clicking("frmCalibration", "MnuCal", button));
  }
  for (const auto& [box, button] :
       {std::pair{"txtXnull", "cmdWriteX"}, std::pair{"txtAUX0null", "cmdWriteAUX0"},
        std::pair{"txtAUX1null", "cmdWriteAUX1"}}) {
    all.push_back({button, [=](Bench& bench) { bench.Click("frmCalibration", button); },
                   [=](Bench& bench) {
                     bench.OpenWindow("MnuCal");
                     bench.Type("frmCalibration", box, "-0.5");
                   }});
  }
  return all;
}

inline Operations CommandOperations() {
  Operations all;
  for (int function = 0; function < 16; ++function) {
    all.push_back({"function " + std::to_string(function),
                   [](Bench& bench) { bench.Click("frmCommand", "cmdWrite"); },
                   [=](Bench& bench) {
                     bench.OpenWindow("mnuCommand");
                     bench.List("frmCommand", "cbxCommand").setCurrentIndex(function);
                   }});
  }
  return all;
}

inline Operations RecordInfoOperations() {
  return {Opening("frmRecInfo", "mnuRecInfo"), Clicking("frmRecInfo", "mnuRecInfo", "cmdRead")};
}

inline Operations AdapterOperations() {
  Operations all{Opening("frmUSBselect", "mnuUsb"),
                 Clicking("frmUSBselect", "mnuUsb", "cmdFindEzUsb"),
                 Clicking("frmUSBselect", "mnuUsb", "optUsbPort_0")};
  for (Operation& operation : all) operation.searches = true;
  return all;
}

inline Operations DebugOperations() {
  const auto open = [](Bench& bench) {
    bench.OpenWindow("mnuUsb");
    bench.Click("frmUSBselect", "cmdDebugUsb");
    bench.Type("frmUSBdebug", "txtTx_1", "0E00");
    bench.Type("frmUSBdebug", "txtTx_2", "0E00");
    bench.Type("frmUSBdebug", "txtLoopWait", "1");
  };
  Operations all;
  for (const char* button : {"cmdReadBits", "cmdReadDelay", "cmdWriteSpi"}) {
    all.push_back({button, [=](Bench& bench) { bench.Click("frmUSBdebug", button); }, open});
  }
  all.push_back({"txtLoopDelay",
                 [](Bench& bench) {
                   QTest::keyClick(&bench.In("frmUSBdebug", "txtLoopDelay"), Qt::Key_Return);
                 },
                 open});
  all.push_back({"cmdLoop",
                 [](Bench& bench) {
                   auto& loop = bench.In<QPushButton>("frmUSBdebug", "cmdLoop");
                   loop.click();
                   // Until three transfers have been made, or it has ended by itself.
                   EXPECT_TRUE(QTest::qWaitFor([&] {
                     return loop.text() == "Loop" ||
                            bench.Find<QLabel>("lblCounts").text().section(' ', 1, 1).toInt() >= 3;
                   }));
                   if (loop.text() == "Stop") loop.click();
                 },
                 [=](Bench& bench) {
                   open(bench);
                   bench.Click("frmUSBdebug", "cmdClear");
                 }});
  return all;
}

}  // namespace kestrel
