// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include "simulator/sensor_registers.h"
#include "simulator/simulated_sensor.h"

namespace kestrel {

using std::chrono::nanoseconds;

namespace {

constexpr double kNullLsbG = 0.004768372;

}  // namespace

CaptureSettings SimulatedSensor::LatchSettings() const {
  return CaptureSettings::Latch(registers_.Read(sensor::kRecCtrl), registers_.Read(sensor::kFftAvg),
                                registers_.Read(sensor::kRecPrd));
}

// In timer mode this begins a series, or begins it anew in the pause between two of its captures.
void SimulatedSensor::StartRecording() {
  registers_.ClearBits(sensor::kStatus, sensor::kDataReady);
  begunByTimer_ = false;
  BeginCapture(clock_.Monotonic());
}

// The start/stop command during a capture: ends it, and the series. A capture that the timer began
// while no record waits to be read is another matter: someone cleared the status in the pause, the
// timer came first, and whoever clears and starts waits for a fresh record. The series begins anew.
void SimulatedSensor::StopOrRestart() {
  const bool recordWaits = (registers_.Read(sensor::kStatus) & sensor::kDataReady) != 0;
  const bool restart = begunByTimer_ && !recordWaits;
  EndRecording();
  if (restart) StartRecording();
}

// Nobody outside can know that the timer has just begun a capture, so its captures take this
// command as the pause does.
void SimulatedSensor::ClearStatusInSeries() {
  if (begunByTimer_) ClearStatus();
}

void SimulatedSensor::RequestStop() {
  if (activity_ != Activity::Capture && !IsRepeating()) return;
  EndRecording();
  registers_.SetBits(sensor::kStatus, sensor::kRecordingEscape);
}

void SimulatedSensor::EndRecording() {
  if (activity_ == Activity::Capture) activity_ = Activity::None;
  nextStart_.reset();
}

// Begins the next capture of the series. Of those that would be complete by `now` only the newest
// can be seen from outside; those before it are counted, and computed as far as they leave a trace.
void SimulatedSensor::ContinueSeries(nanoseconds now, std::uint64_t& passed) {
  const CaptureSettings settings = LatchSettings();
  if (!settings.repeats) return EndRecording();
  const std::uint64_t omitted = OmissibleCaptures(TracesOf(settings), settings.Blocks(),
                                                  settings.CompletedIn(now - *nextStart_), passed);
  registers_.Add(sensor::kRecCnt, omitted);
  capturesOfScenario_ += omitted;
  passed += omitted + 1;
  begunByTimer_ = true;
  BeginCapture(*nextStart_ + static_cast<nanoseconds::rep>(omitted) * settings.Interval());
}

Traces SimulatedSensor::TracesOf(const CaptureSettings& settings) const {
  const bool fills = !records_.IsFull();
  const bool flashFails = scenario_.faults.flashUpdate;
  if (settings.storage == RecordStorage::All && fills && !flashFails) return Traces::OfEveryRecord;
  if (!Control().AnyOn()) return Traces::OfTheNewest;
  const bool storesAlarms = settings.storage == RecordStorage::AlarmTrigger && fills;
  return Control().Latches() || storesAlarms ? Traces::OfAnyRecord : Traces::OfALatestRun;
}

void SimulatedSensor::BeginCapture(nanoseconds start) {
  capture_ = LatchSettings();
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    const std::uint16_t null = registers_.Read(sensor::OfAxis(sensor::kXNull, axis));
    captureCorrectionG_[axis] = kNullLsbG * static_cast<std::int16_t>(null);
  }
  nextStart_.reset();
  if (capture_.repeats) nextStart_ = start + capture_.Interval();
  Begin(Activity::Capture, start, capture_.Duration());
}

void SimulatedSensor::FinishCapture() {
  const Moment start{SecondsSincePowerUp(begun_), capturesOfScenario_++};
  record_ = engine_.Take(scenario_, capture_, start, captureCorrectionG_);
  for (std::size_t axis = 0; axis < kAxisCount && !capture_.timeRecord; ++axis) {
    const SpectrumPeak peak = FindPeak(record_.words[axis]);
    registers_.Set(sensor::OfAxis(sensor::kAlmXPeak, axis), peak.code);
    registers_.Set(sensor::OfAxis(sensor::kAlmXFreq, axis), peak.bin);
  }
  const auto stamp = static_cast<std::uint64_t>(SecondsSincePowerUp(due_));
  registers_.Set(sensor::kTimeStmpL, static_cast<std::uint16_t>(stamp & 0xFFFFU));
  registers_.Set(sensor::kTimeStmpH, static_cast<std::uint16_t>((stamp >> 16U) & 0xFFFFU));
  registers_.Set(sensor::kRecInfo, capture_.InfoWord());
  registers_.Add(sensor::kRecCnt, 1);
  if (!capture_.timeRecord) JudgeSpectrum();
  MeasureSupplyAndTemperature();
  ShowAlarms();
  if (IsToBeStored()) StoreRecord();
  registers_.SetBits(sensor::kStatus, sensor::kDataReady);
}

// The alarm trigger stores a record that raised an alarm, be it the system alarm of the supply and
// temperature that belong to it. A flag that is merely latched is not enough.
bool SimulatedSensor::IsToBeStored() const {
  if (records_.IsFull()) return false;
  if (capture_.storage == RecordStorage::All) return true;
  const unsigned raisedNow = capture_.timeRecord ? sensor::kSystemAlarm : sensor::kAlarmFlags;
  return capture_.storage == RecordStorage::AlarmTrigger && (alarms_.Flags() & raisedNow) != 0;
}

void SimulatedSensor::StoreRecord() {
  if (!WriteFlash()) return;
  StoredRecord stored{.record = record_};
  for (std::size_t i = 0; i < stored.registers.size(); ++i) {
    stored.registers[i] = registers_.Read(sensor::kRecordRegisters[i]);
  }
  records_.Store(std::move(stored));
  registers_.Set(sensor::kRecFlshCnt, records_.Count());
}

// An empty slot has neither data nor information; supply and temperature stay those last measured.
void SimulatedSensor::RetrieveRecord() {
  const StoredRecord* stored = records_.At(registers_.Read(sensor::kRecPntr));
  if (stored == nullptr) {
    record_ = {};
    for (const auto address : sensor::kRecordRegisters) {
      const bool measured = address == sensor::kSupplyOut || address == sensor::kTempOut;
      if (!measured) registers_.Set(address, 0);
    }
    return;
  }
  record_ = stored->record;
  for (std::size_t i = 0; i < stored->registers.size(); ++i) {
    registers_.Set(sensor::kRecordRegisters[i], stored->registers[i]);
  }
}

void SimulatedSensor::ClearRecords() {
  if (!WriteFlash()) return;
  records_.Clear();
  registers_.Set(sensor::kRecFlshCnt, 0);
}

void SimulatedSensor::Autonull() {
  const auto meanG = engine_.MeasureMean(scenario_, LatchSettings().range,
                                         {SecondsSincePowerUp(begun_), capturesOfScenario_});
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    const long null = std::clamp(std::lround(-meanG[axis] / kNullLsbG), -32768L, 32767L);
    registers_.Set(sensor::OfAxis(sensor::kXNull, axis), static_cast<std::uint16_t>(null));
  }
}

void SimulatedSensor::ClearNulls() {
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    registers_.Set(sensor::OfAxis(sensor::kXNull, axis), 0);
  }
}

}  // namespace kestrel
