// The capture cycle: what one press of the start button does.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "acquisition/capture_readout.h"
#include "acquisition/status.h"
#include "acquisition/window_delay.h"
#include "connection/core.h"
#include "device/rec_ctrl.h"
#include "plot/band_overlay.h"

namespace kestrel {

inline constexpr const char* kStartCaption = "Start";
inline constexpr const char* kStopCaption = "Stop";
inline constexpr int kEscapeKey = 27;

// The controls of the main window that a capture depends on.
class CaptureView {
 public:
  virtual ~CaptureView() = default;
  // Caption of cmdStart: the state of the cycle.
  [[nodiscard]] virtual std::string StartCaption() = 0;
  virtual void SetStartCaption(const std::string& caption) = 0;
  virtual void ShowCapturingData(bool shown) = 0;
  virtual void ShowElapsed(double seconds) = 0;  // since the start command
  virtual void SetKeyPreview(bool on) = 0;       // Escape reaches the window before its controls
  [[nodiscard]] virtual std::string FftAvgsText() = 0;
  [[nodiscard]] virtual int RecModeIndex() = 0;  // -1 when nothing is selected
  [[nodiscard]] virtual bool AutoPlotTicked() = 0;
};

// One press of cmdStart: tell the sensor to capture, wait until data are ready, hand over to the
// read-out. Presses that come during the wait run nested in it and stop it through the caption.
class CaptureCycle {
 public:
  CaptureCycle(Core& core, WindowDelay& delay, StatusDisplay& status, AlarmStatus& alarms,
               CaptureReadout& readout, SpectrumPlot& plot, BandOverlay& overlay, CaptureView& view)
      : core_(core),
        delay_(delay),
        status_(status),
        alarms_(alarms),
        readout_(readout),
        plot_(plot),
        overlay_(overlay),
        view_(view) {}

  void cmdStart_Click();
  void Form_KeyUp(int keyCode);

  // Reads the sensor's buffers without a new capture; an earlier record stays on the screen when
  // the sensor is lost meanwhile.
  void cmdReadBuffer_Click();

  // Retrieves a stored record, 0 to 15, from the sensor's flash and reads it out with the kind
  // of the last capture.
  void cmdGetRecord_Click(int record);

  // Reads the newest record that the sensor has captured by itself in timer mode. Returns whether
  // it did; where not, the earlier record stays. Nothing happens while a capture is waited for or
  // the sensor cannot be reached.
  bool TakeSeriesRecord();

  // What a record mode (list index) delivers is what the next read-out expects.
  void SetRecordType(int recMode);

  // What is read of a lost sensor that was found again, before data are taken: it may have started
  // anew with other settings. REC_CTRL if nothing is said.
  void OnFoundAgain(std::function<void()> read) { foundAgain_ = std::move(read); }

  // Ends a series that the sensor captures by itself in timer mode, and a capture under way.
  // Returns whether the sensor was reached.
  bool StopSeries();

  // The window is closing: a running capture ends without touching it or the sensor again.
  void Close();

  [[nodiscard]] bool Running() const { return running_; }

 private:
  class Run;
  struct Wait {
    bool ready = false;  // false: ended by the user
  };

  void Start();
  void Capture();
  void Stop();
  bool InterfaceReady();
  void TellLostPort(const std::string& when, const std::string& cure);
  std::optional<Wait> WaitForData();
  bool PollDataReady();
  void TakeRecord(const RecordOrigin& origin);
  void ReadBuffers(const RecordOrigin& origin);
  [[nodiscard]] double InitialWaitMs();
  [[nodiscard]] double SecondsSince(float start);
  [[nodiscard]] bool GoingOn();

  Core& core_;
  WindowDelay& delay_;
  StatusDisplay& status_;
  AlarmStatus& alarms_;
  CaptureReadout& readout_;
  SpectrumPlot& plot_;
  BandOverlay& overlay_;
  CaptureView& view_;
  std::function<void()> foundAgain_ = [] { gRecCtrl->ReadRecCtrl(); };
  bool running_ = false;
  bool closed_ = false;
};

}  // namespace kestrel
