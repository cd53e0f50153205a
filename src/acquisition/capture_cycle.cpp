// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "acquisition/capture_cycle.h"

#include <algorithm>

#include "acquisition/commands.h"
#include "app/program_state.h"
#include "connection/start.h"
#include "device/rec_ctrl.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr double kPollMs = 50;
constexpr double kMsPerAverage = 45;
constexpr std::int16_t kMsPerRateCode = 10;
constexpr int kStopPasses = 20;
// The sensor takes a write of this byte to this address as the request to stop a capture.
constexpr std::int16_t kStopAddress = 0x68;
constexpr std::uint8_t kStopData = 0xE8;
constexpr int kTimeMode = 2;
// The sensor needs this long to bring a record from its flash into the buffers.
constexpr float kRetrieveMs = 51;

void SetBuffersSigned(bool isSigned) {
  for (const std::int16_t buffer : {row::X_BUF, row::Y_BUF, row::Z_BUF}) {
    RegSigned[buffer] = isSigned;
  }
}

}  // namespace

// The cycle from the start command to its end; leaves the window idle whichever way it ends.
class CaptureCycle::Run {
 public:
  explicit Run(CaptureCycle& cycle) : cycle_(cycle) { cycle_.running_ = true; }
  ~Run() {
    if (!cycle_.closed_) {
      cycle_.view_.SetStartCaption(kStartCaption);
      cycle_.view_.ShowCapturingData(false);
      cycle_.view_.SetKeyPreview(false);
    }
    cycle_.running_ = false;
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

 private:
  CaptureCycle& cycle_;
};

void CaptureCycle::cmdStart_Click() {
  const std::string caption = view_.StartCaption();
  if (caption == kStartCaption) {
    Start();
  } else if (caption == kStopCaption) {
    Stop();
  } else {
    core_.seams.messages.Show("unknown caption cmdStart");
    view_.SetStartCaption(kStopCaption);
    view_.ShowCapturingData(false);
  }
}

void CaptureCycle::Form_KeyUp(int keyCode) {
  if (view_.StartCaption() == kStopCaption && keyCode == kEscapeKey) cmdStart_Click();
}

// A press while a stopped capture is still unwinding starts nothing.
void CaptureCycle::Start() {
  if (running_ || !InterfaceReady()) return;
  const Run run(*this);
  Capture();
  if (closed_) return;
  TellLostPort();
  // Presses that queued up during the read-out are dropped here, while running_ still holds.
  view_.SetStartCaption(kStartCaption);
  core_.seams.loop.Yield();
}

void CaptureCycle::Capture() {
  status_.ClearStatus("cmdStart");
  core_.registers.WriteReg(row::COMMAND, kCaptureCommand);
  if (!GoingOn()) return;
  view_.ShowCapturingData(true);
  view_.SetStartCaption(kStopCaption);
  view_.SetKeyPreview(true);
  core_.seams.loop.Yield();
  if (!WaitForData()) return;
  status_.ReadStatus("cmdStart");
  view_.ShowCapturingData(false);
  if (GoingOn()) TakeRecord();
}

// An adapter's loss has been told by the adapter; a port tells nothing by itself.
void CaptureCycle::TellLostPort() {
  if (InterfaceType != kParallelPort || core_.registers.Reachable()) return;
  core_.seams.messages.Show("The parallel port " + Hex(PortAddress) +
                            " was lost during the capture. What is on the screen was read before. "
                            "Check the port, then press Start again.");
}

// Data are taken only through an interface that can be used; one that was lost is searched again.
bool CaptureCycle::InterfaceReady() {
  if (core_.registers.Reachable()) return true;
  const std::string lost = InterfaceType == kUsbAdapter ? SelectedAdapter.deviceName : "";
  InitInterface(core_);
  const bool found = core_.registers.Reachable();
  if (found) foundAgain_();
  if (!found || lost.empty() || SelectedAdapter.deviceName == lost) return found;
  // Nobody has chosen the sensor behind another board.
  core_.seams.messages.Show(lost + " is gone. " + SelectedAdapter.deviceName +
                            " is selected now; it may have another sensor. Try again to take data "
                            "from it.");
  return false;
}

// Returns false when the sensor was lost or the window closed. There is no time-out: a capture that
// never completes is ended by the user.
bool CaptureCycle::WaitForData() {
  const auto start = static_cast<float>(core_.seams.clock.SecondsSinceMidnight());
  delay_.DelayA(InitialWaitMs());
  bool ready = false;
  do {
    if (!GoingOn()) return false;
    view_.ShowElapsed(SecondsSince(start));
    delay_.DelayA(kPollMs);
    if (!GoingOn()) return false;
    ready = PollDataReady();
    view_.SetKeyPreview(true);
    core_.seams.loop.Yield();
    if (!GoingOn()) return false;
  } while (!ready && view_.StartCaption() == kStopCaption);
  return true;
}

bool CaptureCycle::PollDataReady() {
  core_.registers.ReadReg(row::STATUS);
  return (RegValue & kDataReadyFlag) != 0;
}

// A record that cannot be read to its end leaves the earlier one, and its kind, in place.
void CaptureCycle::TakeRecord() {
  const CaptureBuffer earlierBuffer = Buff;
  const std::string earlierType = CaptureType;
  const bool earlierSigned = RegSigned[row::X_BUF];
  SetRecordType(view_.RecModeIndex());
  if (!view_.AutoPlotTicked()) return;
  if (!readout_.ReadCaptureBuffer()) {
    Buff = earlierBuffer;
    CaptureType = earlierType;
    SetBuffersSigned(earlierSigned);
  }
  // The record is drawn a second time here, after the read-out's own drawing.
  if (closed_) return;
  plot_.PlotRecord();
  overlay_.RecordRedrawn();
}

void CaptureCycle::SetRecordType(int recMode) {
  if (recMode == 0 || recMode == 1) {
    CaptureType = "FFT";
    Buff.width = kFftWidth;
    SetBuffersSigned(false);
  } else if (recMode == kTimeMode) {
    CaptureType = "TimeDomain";
    Buff.width = kTimeWidth;
    SetBuffersSigned(true);
  } else {
    core_.seams.messages.Show("ERROR.\nSubroutine = ReadCaptureBuffer\nMe.cbxRecMode.ListIndex = " +
                              std::to_string(recMode) + "\nValid values are  = 0,1,2");
  }
}

void CaptureCycle::Stop() {
  view_.SetStartCaption(kStartCaption);
  bool ready = false;
  int passes = 0;
  do {
    delay_.DelayA(kPollMs);
    if (!GoingOn()) break;
    ready = PollDataReady();
    core_.seams.loop.Yield();
    if (!GoingOn()) break;
    core_.registers.WriteRegByte(std::int16_t{kStopAddress}, kStopData);
    ++passes;
  } while (passes < kStopPasses && ready);
  if (!closed_) view_.ShowCapturingData(false);
}

void CaptureCycle::cmdReadBuffer_Click() {
  if (!InterfaceReady()) return;
  if (!readout_.ReadCaptureBuffer() && !closed_) plot_.PlotRecord();
  if (!closed_) overlay_.RecordRedrawn();
}

void CaptureCycle::cmdGetRecord_Click(int record) {
  if (!InterfaceReady()) return;
  core_.registers.WriteReg(row::REC_PNTR, record);
  core_.registers.WriteReg(row::COMMAND, kRetrieveRecordCommand);
  if (!RegisterAccess::Usable()) return;
  core_.delay.Delay(float{kRetrieveMs});
  cmdReadBuffer_Click();
}

void CaptureCycle::Close() {
  closed_ = true;
  delay_.Close();
}

// The sensor cannot be done earlier.
double CaptureCycle::InitialWaitMs() {
  return LeadingNumber(view_.FftAvgsText()) * kMsPerAverage +
         MultiplyInteger(gRecCtrl->SampleRate(), kMsPerRateCode);
}

double CaptureCycle::SecondsSince(float start) {
  const auto now = static_cast<float>(core_.seams.clock.SecondsSinceMidnight());
  return std::max(0.0, static_cast<double>(now - start));
}

bool CaptureCycle::GoingOn() {
  return !closed_ && core_.registers.Reachable();
}

}  // namespace kestrel
