// How a capture is started, waited for, stopped and taken.
// SPDX-License-Identifier: MIT
#include "acquisition/capture_cycle.h"

#include <algorithm>

#include "acquisition/capture_steps.h"
#include "acquisition/readings.h"
#include "app/program_state.h"
#include "connection/init_interface.h"
#include "device/rec_ctrl.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "record/status_flags.h"
#include "regmap/command_words.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr double kPollMs = kPoll.count();
constexpr double kMsPerAverage = kPerAverage.count();
constexpr std::int16_t kMsPerRateCode = kPerRateCode.count();

bool IsSpectrumMode(int recMode) {
  return recMode == 0 || recMode == 1;
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
  TellLostPort("during the capture", "press Start again");
  // Presses that queued up during the read-out are dropped here, while running_ still holds.
  view_.SetStartCaption(kStartCaption);
  core_.seams.loop.Yield();
}

void CaptureCycle::Capture() {
  status_.ClearStatus("cmdStart");
  const double gPerLsb = gRecCtrl->gLsb();  // of the range that the sensor takes for this capture
  const auto capture = CommandWord(CommandBit::RecordStartStop);
  if (!core_.registers.Write(row::COMMAND, capture) || !GoingOn()) return;
  view_.ShowCapturingData(true);
  view_.SetStartCaption(kStopCaption);
  view_.SetKeyPreview(true);
  core_.seams.loop.Yield();
  const auto wait = WaitForData();
  if (!wait) return;
  if (wait->ready && IsSpectrumMode(view_.RecModeIndex())) alarms_.ExpectPeaks(gPerLsb);
  status_.ReadStatus("cmdStart");
  view_.ShowCapturingData(false);
  if (!GoingOn()) return;
  const bool ready = wait->ready || IsDataReady(status_.Last());
  TakeRecord({.stopped = !ready, .countBefore = {}, .stored = {}});
}

// An adapter's loss has been told by the adapter; a port tells nothing by itself.
void CaptureCycle::TellLostPort(const std::string& when, const std::string& cure) {
  if (InterfaceType != kParallelPort || core_.registers.Reachable()) return;
  core_.seams.messages.Show("The parallel port " + Hex(PortAddress) + " was lost " + when +
                            ". What is on the screen was read before. Check the port, then " +
                            cure + ".");
}

// Data are taken only through an interface that can be used; one that was lost is searched again.
bool CaptureCycle::InterfaceReady() {
  if (core_.registers.Reachable()) return true;
  const std::string lost = InterfaceType == kUsbAdapter ? SelectedAdapter.deviceName : "";
  readout_.ForgetCount();
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

// None when the sensor was lost or the window closed. There is no time-out: a capture that never
// completes is ended by the user.
std::optional<CaptureCycle::Wait> CaptureCycle::WaitForData() {
  const auto start = static_cast<float>(core_.seams.clock.SecondsSinceMidnight());
  delay_.DelayA(InitialWaitMs());
  bool ready = false;
  do {
    if (!GoingOn()) return std::nullopt;
    view_.ShowElapsed(SecondsSince(start));
    delay_.DelayA(kPollMs);
    if (!GoingOn()) return std::nullopt;
    ready = PollDataReady();
    view_.SetKeyPreview(true);
    core_.seams.loop.Yield();
    if (!GoingOn()) return std::nullopt;
  } while (!ready && view_.StartCaption() == kStopCaption);
  return Wait{.ready = ready};
}

bool CaptureCycle::PollDataReady() {
  const auto status = ReadStatusFlags(core_.registers);
  return status && IsDataReady(*status);
}

// A record that cannot be read to its end leaves the earlier one, and its kind, in place.
void CaptureCycle::TakeRecord(const RecordOrigin& origin) {
  SetRecordType(view_.RecModeIndex());
  if (!view_.AutoPlotTicked()) {
    readout_.ForgetCount();
    return;
  }
  readout_.ReadCaptureBuffer(origin);
  // The record is drawn a second time here, after the read-out's own drawing.
  if (closed_) return;
  plot_.PlotRecord();
  overlay_.RecordRedrawn();
}

void CaptureCycle::SetRecordType(int recMode) {
  if (IsSpectrumMode(recMode)) {
    readout_.Expect(RecordKind::Spectrum);
  } else if (recMode == kTimeMode) {
    readout_.Expect(RecordKind::Time);
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
    SendStop(core_.registers);
    ++passes;
  } while (passes < kStopPasses && ready);
  if (!closed_) view_.ShowCapturingData(false);
}

void CaptureCycle::cmdReadBuffer_Click() {
  if (InterfaceReady()) ReadBuffers({});
}

void CaptureCycle::ReadBuffers(const RecordOrigin& origin) {
  if (!readout_.ReadCaptureBuffer(origin) && !closed_) plot_.PlotRecord();
  if (!closed_) overlay_.RecordRedrawn();
}

// The range of its peaks stands in the record's own information word.
bool CaptureCycle::TakeSeriesRecord() {
  if (running_ || !GoingOn()) return false;
  const auto info = ReadWord(core_.registers, row::REC_INFO);
  if (!info) return false;
  alarms_.ExpectPeaks(GPerLsb(SettingsFromWords(*info, 0).range));
  status_.ReadStatus("cmdStart");
  readout_.Expect(RecordKind::Spectrum);
  const bool read = readout_.ReadSeriesBuffer();
  if (closed_) return read;
  if (!read) plot_.PlotRecord();
  overlay_.RecordRedrawn();
  return read;
}

// The peaks that come with a stored spectrum are codes of the range at which it was taken.
void CaptureCycle::cmdGetRecord_Click(int record) {
  if (!InterfaceReady()) return;
  if (!core_.registers.Write(row::REC_PNTR, record) ||
      !core_.registers.Write(row::COMMAND, CommandWord(CommandBit::RetrieveRecord))) {
    TellLostPort("before the record was retrieved", "press Get record again");
    return;
  }
  core_.delay.Delay(float{kRetrieveMs});
  if (!InterfaceReady()) return;
  ReadBuffers({.stopped = false, .countBefore = {}, .stored = record});
  const Record& read = core_.record.Get();
  if (read.origin.stored && read.kind == RecordKind::Spectrum) {
    alarms_.ExpectPeaks(GPerLsb(read.settings.range));
  }
}

bool CaptureCycle::StopSeries() {
  return SendStop(core_.registers);
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
