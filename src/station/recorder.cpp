// One capture from the start command to its record.
// SPDX-License-Identifier: MIT
#include "station/recorder.h"

#include <stdexcept>

#include "acquisition/commands.h"
#include "device/rec_ctrl.h"
#include "record/capture_data.h"
#include "record/status_flags.h"
#include "regmap/register_table.h"
#include "station/readings.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kPoll{50};
constexpr milliseconds kPerAverage{45};
constexpr milliseconds kPerRateCode{10};
constexpr int kStopPasses = 20;
// The sensor takes a write of this byte to this address as the request to stop a capture.
constexpr std::int16_t kStopAddress = 0x68;
constexpr std::uint8_t kStopData = 0xE8;
// After a capture of the program's own the flag of a failed transfer means nothing.
constexpr std::int32_t kSpiFailureFlag = 8;
// The sensor needs this long to bring a record from its flash into the buffers.
constexpr float kRetrieveMs = 51;
constexpr std::int16_t kTimeMode = 2;

void ReadBuffersAs(RecordKind kind) {
  for (const std::int16_t buffer : {row::X_BUF, row::Y_BUF, row::Z_BUF}) {
    RegSigned[buffer] = kind == RecordKind::Time;
  }
}

}  // namespace

Recorder::Recorder(Core& core, UnattendedLoop& loop, StepEnd& end, const Watch& watch,
                   std::function<SensorIdentity()> identity)
    : core_(core),
      loop_(loop),
      end_(end),
      watch_(watch),
      identity_(std::move(identity)),
      log_(core.seams.files, core.seams.locale, loop, view_) {}

Result<RecordSetup> Recorder::Configure(const RecordSetup& change) {
  if (change.mode) gRecCtrl->RecModeCode(*change.mode);
  if (change.range) gRecCtrl->RangeFS(*change.range);
  if (change.option) gRecCtrl->SampleRate(*change.option);
  if (change.window) gRecCtrl->Windowing(*change.window);
  if (change.mode || change.range || change.option || change.window) gRecCtrl->WriteRecCtrl();
  gRecCtrl->ReadRecCtrl();
  recCtrl_ = RegValue;
  if (change.averages) core_.registers.WriteReg(row::FFT_AVG, *change.averages);
  const auto averages = ReadWord(core_.registers, row::FFT_AVG);
  if (!averages) return end_.Lost();
  NoteAverages(*averages);
  setup_ = {.mode = gRecCtrl->RecModeCode(),
            .range = gRecCtrl->RangeFS(),
            .option = gRecCtrl->SampleRate(),
            .window = gRecCtrl->Windowing(),
            .averages = static_cast<std::int16_t>(*averages)};
  return setup_;
}

Result<Captured> Recorder::Capture() {
  if (!setup_.mode) {
    const auto setup = Configure({});
    if (!setup) return setup.Why();
  }
  if (*setup_.mode > kTimeMode) {
    return end_.Failed(FailureKind::Refused,
                       "The sensor's record mode is 3, which is none. Set another.");
  }
  loop_.Forget();
  RecordOrigin origin;
  if (!Start() || WaitForData(origin) == Wait::Lost) return end_.Lost();
  AlarmState alarms;
  if (!ReadAlarmPeaks(core_.registers, alarms)) return end_.Lost();
  const auto status = ReadStatusFlags(core_.registers);
  if (!status) return end_.Lost();
  const StatusFlags flags{.word = status->word & ~kSpiFailureFlag, .known = true};
  const RecordKind kind = *setup_.mode == kTimeMode ? RecordKind::Time : RecordKind::Spectrum;
  if (!ReadOut(kind, origin, flags, alarms)) return end_.Lost();
  loop_.Yield();  // an interrupt of the read-out's time
  return Captured{Rescaled(current_, current_.settings.range), loop_.WasInterrupted()};
}

// What the flags say afterwards is of this capture.
bool Recorder::Start() {
  AlarmState earlier;
  if (!core_.registers.Write(row::COMMAND, kClearStatusCommand)) return false;
  if (!ReadAlarmPeaks(core_.registers, earlier) || !ReadStatusFlags(core_.registers)) return false;
  return core_.registers.Write(row::COMMAND, kCaptureCommand);
}

// There is no time limit: a capture that never completes is ended by an interrupt.
Recorder::Wait Recorder::WaitForData(RecordOrigin& origin) {
  const nanoseconds start = core_.seams.clock.Monotonic();
  if (!loop_.Pause(ShortestCapture())) return Stop(origin);
  for (;;) {
    const nanoseconds passed = core_.seams.clock.Monotonic() - start;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(passed);
    watch_.Tell({"Capturing", static_cast<int>(seconds.count()), 0});
    if (!loop_.Pause(kPoll)) return Stop(origin);
    const auto status = ReadStatusFlags(core_.registers);
    if (!status) return Wait::Lost;
    if ((status->word & kDataReadyFlag) != 0) return Wait::Ready;
  }
}

// The count that the record will be held against is read first.
Recorder::Wait Recorder::Stop(RecordOrigin& origin) {
  origin.countBefore = ReadWord(core_.registers, row::REC_CNT);
  bool ready = false;
  for (int pass = 0; pass == 0 || (pass < kStopPasses && ready); ++pass) {
    loop_.Pause(kPoll);
    const auto status = ReadStatusFlags(core_.registers);
    if (!status) return Wait::Lost;
    ready = (status->word & kDataReadyFlag) != 0;
    origin.stopped = !ready && pass == 0;
    if (!core_.registers.WriteRegByte(std::int16_t{kStopAddress}, kStopData)) return Wait::Lost;
  }
  return Wait::Stopped;
}

// The sensor cannot be done earlier.
nanoseconds Recorder::ShortestCapture() const {
  return setup_.averages.value_or(0) * kPerAverage + setup_.option.value_or(0) * kPerRateCode;
}

Result<Record> Recorder::ReadStored(int number, RecordKind kind) {
  if (!core_.registers.Write(row::REC_PNTR, number) ||
      !core_.registers.Write(row::COMMAND, kRetrieveRecordCommand)) {
    return end_.Lost();
  }
  core_.delay.Delay(float{kRetrieveMs});
  if (!ReadOut(kind, RecordOrigin{.countBefore = {}, .stored = number}, {}, {})) return end_.Lost();
  if (!ReadAlarmPeaks(core_.registers, current_.alarms)) return end_.Lost();
  const auto status = ReadStatusFlags(core_.registers);
  if (!status) return end_.Lost();
  current_.status = *status;
  return Rescaled(current_, current_.settings.range);
}

bool Recorder::ReadOut(RecordKind kind, const RecordOrigin& origin, StatusFlags status,
                       const AlarmState& alarms) {
  const auto time = core_.seams.clock.UtcNow();
  ReadBuffersAs(kind);
  auto record = ReadRecordBuffers(core_.registers, kind, gRecCtrl->RangeFS(), current_,
                                  [this](int done, int total) {
                                    watch_.Tell({"Reading", done, total});
                                  });
  if (!record) return false;
  record->settings.recCtrl = recCtrl_;
  record->origin = origin;
  record->status = status;
  record->alarms = alarms;
  record->time = time;
  record->sensor = identity_();
  if (!ReadAlarmFlags(core_.registers, record->alarms)) return false;
  current_ = std::move(*record);
  HandOver();
  return true;
}

// The one place where the mandated names learn of a record without a window.
void Recorder::HandOver() const {
  Buff.width = current_.Width();
  Buff.sampleRateOption = current_.settings.option;
  CaptureType = current_.kind == RecordKind::Time ? "TimeDomain" : "FFT";
  DataX = current_.Of(Axis::X).data;
  DataY = current_.Of(Axis::Y).data;
  DataZ = current_.Of(Axis::Z).data;
  RawX = current_.Of(Axis::X).raw;
  RawY = current_.Of(Axis::Y).raw;
  RawZ = current_.Of(Axis::Z).raw;
  LsbWeight = current_.lsbWeight;
  RangeSetting = current_.scaledRange;
  CaptSupply = current_.conditions.supplyV;
  CaptTemp = current_.conditions.temperatureC;
  for (std::size_t bit = 0; bit < kStatusFlags; ++bit) {
    const bool isSet = current_.status.IsSet(static_cast<int>(bit));
    StatusFlagText[bit] = isSet ? kStatusFlagTable[bit].whenSet : kStatusFlagClear;
  }
}

double Recorder::GPerCode() const {
  return gRecCtrl->gLsb();
}

Result<std::filesystem::path> Recorder::WriteDataFile() {
  try {
    log_.WriteDataFile();
    return log_.LastFile();
  } catch (const std::runtime_error& error) {
    return end_.Failed(FailureKind::Refused, error.what());
  }
}

}  // namespace kestrel
