// Taking records: when captures begin and end, and what registers and flash get of them.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/recorder.h"

#include <algorithm>
#include <cmath>

#include "simulator/registers/sensor_registers.h"

namespace kestrel::sensor {

using std::chrono::nanoseconds;

namespace {

constexpr double kNullLsbG = 0.004768372;

}  // namespace

void Recorder::Restart() {
  End();
  record_ = {};
}

void Recorder::Start() {
  registers_.ClearBits(kStatus, kDataReady);
  begunByTimer_ = false;
  BeginCapture(work_.Now());
}

void Recorder::StopOrRestart() {
  const bool recordWaits = (registers_.Read(kStatus) & kDataReady) != 0;
  const bool restart = begunByTimer_ && !recordWaits;
  End();
  if (restart) Start();
}

void Recorder::Escape() {
  if (!work_.IsCapture() && !IsRepeating()) return;
  End();
  registers_.SetBits(kStatus, kRecordingEscape);
}

void Recorder::End() {
  if (work_.IsCapture()) work_.End();
  nextStart_.reset();
}

void Recorder::Postpone(nanoseconds until) {
  if (IsRepeating()) nextStart_ = std::max(*nextStart_, until);
}

void Recorder::ContinueSeries(nanoseconds now, std::uint64_t& passed) {
  const CaptureSettings settings = Settings();
  if (!settings.repeats) return End();
  const std::uint64_t omitted = OmissibleCaptures(TracesOf(settings), settings.Blocks(),
                                                  settings.CompletedIn(now - *nextStart_), passed);
  registers_.Add(kRecCnt, omitted);
  surroundings_.captures += omitted;
  passed += omitted + 1;
  begunByTimer_ = true;
  BeginCapture(*nextStart_ + static_cast<nanoseconds::rep>(omitted) * settings.Interval());
}

CaptureSettings Recorder::Settings() const {
  return CaptureSettings::Latch(registers_.Read(kRecCtrl), registers_.Read(kFftAvg),
                                registers_.Read(kRecPrd));
}

Traces Recorder::TracesOf(const CaptureSettings& settings) const {
  const bool fills = !flash_.IsFull();
  const bool flashFails = surroundings_.scenario.faults.flashUpdate;
  if (settings.storage == RecordStorage::All && fills && !flashFails) return Traces::OfEveryRecord;
  const AlarmControl control = alarms_.Control();
  if (!control.AnyOn()) return Traces::OfTheNewest;
  const bool storesAlarms = settings.storage == RecordStorage::AlarmTrigger && fills;
  return control.Latches() || storesAlarms ? Traces::OfAnyRecord : Traces::OfALatestRun;
}

void Recorder::BeginCapture(nanoseconds start) {
  settings_ = Settings();
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    const std::uint16_t null = registers_.Read(OfAxis(kXNull, axis));
    correctionG_[axis] = kNullLsbG * static_cast<std::int16_t>(null);
  }
  nextStart_.reset();
  if (settings_.repeats) nextStart_ = start + settings_.Interval();
  work_.Begin(Work::Kind::Capture, start, settings_.Duration());
}

void Recorder::Finish() {
  const Moment start = surroundings_.At(work_.Begun());
  ++surroundings_.captures;
  record_ = engine_.Take(surroundings_.scenario, settings_, start, correctionG_);
  Describe();
  if (!settings_.timeRecord) alarms_.Judge(record_, flash_.Bands());
  alarms_.Measure(work_.Due());
  if (IsToBeStored()) flash_.StoreRecord(record_);
  registers_.SetBits(kStatus, kDataReady);
}

void Recorder::Describe() {
  for (std::size_t axis = 0; axis < kAxisCount && !settings_.timeRecord; ++axis) {
    const SpectrumPeak peak = FindPeak(record_.words[axis]);
    registers_.Set(OfAxis(kAlmXPeak, axis), peak.code);
    registers_.Set(OfAxis(kAlmXFreq, axis), peak.bin);
  }
  const auto stamp = static_cast<std::uint64_t>(surroundings_.SecondsSincePowerUp(work_.Due()));
  registers_.Set(kTimeStmpL, static_cast<std::uint16_t>(stamp & 0xFFFFU));
  registers_.Set(kTimeStmpH, static_cast<std::uint16_t>((stamp >> 16U) & 0xFFFFU));
  registers_.Set(kRecInfo, settings_.InfoWord());
  registers_.Add(kRecCnt, 1);
}

// The alarm trigger stores a record that raised an alarm, be it the system alarm of the supply and
// temperature that belong to it. A flag that is merely latched is not enough.
bool Recorder::IsToBeStored() const {
  if (flash_.IsFull()) return false;
  if (settings_.storage == RecordStorage::All) return true;
  const unsigned raisedNow = settings_.timeRecord ? kSystemAlarm : kAlarmFlags;
  return settings_.storage == RecordStorage::AlarmTrigger && (alarms_.Flags() & raisedNow) != 0;
}

std::uint16_t* Recorder::BufferWord(std::uint8_t address) {
  std::vector<std::uint16_t>& words = record_.words[(address - kXBuf) / 2U];
  const std::size_t pointer = registers_.Read(kBufPntr);
  return pointer < words.size() ? &words[pointer] : nullptr;
}

void Recorder::Autonull() {
  const auto meanG = engine_.MeasureMean(surroundings_.scenario, Settings().range,
                                         surroundings_.At(work_.Begun()));
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    const long null = std::clamp(std::lround(-meanG[axis] / kNullLsbG), -32768L, 32767L);
    registers_.Set(OfAxis(kXNull, axis), static_cast<std::uint16_t>(null));
  }
}

void Recorder::ClearNulls() {
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    registers_.Set(OfAxis(kXNull, axis), 0);
  }
}

}  // namespace kestrel::sensor
