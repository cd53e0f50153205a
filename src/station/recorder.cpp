// One capture from the start command to its record.
// SPDX-License-Identifier: MIT
#include "station/recorder.h"

#include <stdexcept>

#include "acquisition/capture_steps.h"
#include "acquisition/readings.h"
#include "acquisition/sensor_identity.h"
#include "alarms/alarm_words.h"
#include "device/rec_ctrl.h"
#include "record/capture_data.h"
#include "record/status_flags.h"
#include "regmap/command_words.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

using std::chrono::nanoseconds;

}  // namespace

Recorder::Recorder(Core& core, UnattendedLoop& loop, StepEnd& end, const Watch& watch)
    : core_(core),
      loop_(loop),
      end_(end),
      watch_(watch),
      fast_(core),
      log_(core.record, core.seams.files, core.seams.locale, loop, view_) {
  fast_.OnRefused([this](const FastReadout::Difference& difference) {
    core_.seams.messages.Show(TextOf(difference));
  });
}

Result<RecordSetup> Recorder::Configure(const RecordSetup& change) {
  if (change.mode) gRecCtrl->RecModeCode(*change.mode);
  if (change.range) gRecCtrl->RangeFS(*change.range);
  if (change.option) gRecCtrl->SampleRate(*change.option);
  if (change.window) gRecCtrl->Windowing(*change.window);
  if (change.mode || change.range || change.option || change.window) gRecCtrl->WriteRecCtrl();
  gRecCtrl->ReadRecCtrl();
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
  const std::int16_t mode = setup_.mode.value_or(0);
  if (mode > kTimeMode) {
    return end_.Failed(FailureKind::Refused,
                       "The sensor's record mode is 3, which does not exist. Set another one.");
  }
  loop_.Forget();
  RecordOrigin origin;
  if (!Start() || WaitForData(origin) == Wait::Lost) return end_.Lost();
  const auto peaks = ReadAlarmPeaks(core_.registers, {});
  if (!peaks) return end_.Lost();
  const auto status = ReadStatusFlags(core_.registers);
  if (!status) return end_.Lost();
  auto record = ReadOut(mode == kTimeMode ? RecordKind::Time : RecordKind::Spectrum, origin);
  if (!record) return end_.Lost();
  const auto alarms = ReadAlarmFlags(core_.registers, *peaks);
  if (!alarms) return end_.Lost();
  record->status = {.word = status->word & ~kSpiFailureFlag, .known = true};
  record->alarms = *alarms;
  loop_.Yield();  // an interrupt of the read-out's time
  return Captured{HandOver(*std::move(record)), loop_.WasInterrupted()};
}

// What the flags say afterwards is of this capture.
bool Recorder::Start() {
  if (!core_.registers.Write(row::COMMAND, CommandWord(CommandBit::ClearStatus))) return false;
  if (!ReadAlarmPeaks(core_.registers, {}) || !ReadStatusFlags(core_.registers)) return false;
  return core_.registers.Write(row::COMMAND, CommandWord(CommandBit::RecordStartStop));
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
    if (IsDataReady(*status)) return Wait::Ready;
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
    ready = IsDataReady(*status);
    origin.stopped = !ready && pass == 0;
    if (!SendStop(core_.registers)) return Wait::Lost;
  }
  return Wait::Stopped;
}

// The sensor cannot be done earlier.
nanoseconds Recorder::ShortestCapture() const {
  return setup_.averages.value_or(0) * kPerAverage + setup_.option.value_or(0) * kPerRateCode;
}

Result<Record> Recorder::ReadStored(int number, RecordKind kind) {
  if (!core_.registers.Write(row::REC_PNTR, number) ||
      !core_.registers.Write(row::COMMAND, CommandWord(CommandBit::RetrieveRecord))) {
    return end_.Lost();
  }
  core_.delay.Delay(float{kRetrieveMs});
  return ReadWithState(kind, RecordOrigin{.countBefore = {}, .stored = number});
}

Result<Record> Recorder::ReadPresent(RecordKind kind) {
  return ReadWithState(kind, {});
}

Result<Record> Recorder::ReadWithState(RecordKind kind, const RecordOrigin& origin) {
  auto record = ReadOut(kind, origin);
  if (!record) return end_.Lost();
  const auto alarms = ReadAlarmFlags(core_.registers, {});
  if (!alarms) return end_.Lost();
  const auto peaks = ReadAlarmPeaks(core_.registers, *alarms);
  if (!peaks) return end_.Lost();
  const auto status = ReadStatusFlags(core_.registers);
  if (!status) return end_.Lost();
  record->alarms = *peaks;
  record->status = *status;
  return HandOver(*std::move(record));
}

std::optional<Record> Recorder::ReadOut(RecordKind kind, const RecordOrigin& origin) {
  const auto time = core_.seams.clock.UtcNow();
  ReadBuffersAs(kind);
  const auto scale = [](Record& read) {
    read.settings.recCtrl = gRecCtrl->Word();
    read.scaledRange = gRecCtrl->RangeFS();
    read.lsbWeight = LsbWeightOf(read.scaledRange, read.kind);
  };
  auto record = ReadRecordBuffers(core_.registers, fast_, kind,
                                  {.scale = scale,
                                   .counted = {},
                                   .supply = {},
                                   .temperature = {},
                                   .points = [this](int done, int total) {
                                     watch_.Tell({"Reading", done, total});
                                   }});
  if (!record) return std::nullopt;
  record->origin = origin;
  record->time = time;
  record->sensor = PresentSensor(core_);
  return record;
}

Record Recorder::HandOver(Record record) {
  record.alarms.gPerPeakLsb = LsbWeightOf(record.settings.range, RecordKind::Spectrum);
  NameStatus(record.status);
  core_.record.HandOver(std::move(record));
  return Rescaled(core_.record.Get(), core_.record.Get().settings.range);
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
