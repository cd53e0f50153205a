// Steps with the sensor of a monitor.
// SPDX-License-Identifier: MIT
#include "monitor/sensor.h"

#include <algorithm>
#include <utility>

#include "acquisition/capture_steps.h"
#include "acquisition/readings.h"
#include "acquisition/sensor_identity.h"
#include "device/rec_ctrl.h"
#include "monitor/seen_records.h"
#include "regmap/command_words.h"
#include "regmap/register_table.h"
#include "setup/difference.h"

namespace kestrel::monitor {
namespace {

constexpr std::int16_t kManual = 0;
constexpr std::int16_t kTimer = 1;
constexpr std::size_t kMostDifferences = 5;

// A pointer into the flash is moved by every look at it, and lines that are inputs by the world.
bool IsGuarded(std::size_t index) {
  return index != Index(setup::Register::RecPntr) && index != Index(setup::Register::GpioCtrl);
}

Trouble Lost() {
  return {Trouble::Kind::Away, "The sensor was lost."};
}

// The first few by name.
std::string PutBackText(const setup::Setup& set, const setup::Setup& now,
                        const std::vector<std::size_t>& others) {
  std::string text;
  std::size_t count = 0;
  for (const std::size_t index : others) {
    for (const setup::Difference& one : setup::DifferenceOfRegister(set, now, index)) {
      if (++count > kMostDifferences) continue;
      text += (text.empty() ? "" : "; ") + one.place + " was " + one.now + ", set again to " +
              one.saved;
    }
  }
  if (count <= kMostDifferences) return text;
  return text + "; and " + std::to_string(count - kMostDifferences) + " more";
}

std::string SensorText(const SensorIdentity& identity) {
  return identity.interface + (identity.adapter.empty() ? "" : " (" + identity.adapter + ")");
}

}  // namespace

std::optional<std::int32_t> Sensor::Read(std::int16_t row) {
  return ReadWord(station_.Road().registers, row);
}

Trouble Sensor::TroubleOf(const Failure& failure) const {
  if (failure.kind == FailureKind::NoSensor) return {Trouble::Kind::Away, failure.text};
  return {patience_.IsEnding() ? Trouble::Kind::Ended : Trouble::Kind::Silent, failure.text};
}

// Where nothing drives the line, all words read alike.
std::optional<Trouble> Sensor::Mute() {
  constexpr std::int32_t kAllOnes = 0xFFFF;
  const auto product = Read(row::PROD_ID);
  if (!product) return Lost();
  if (*product != 0 && *product != kAllOnes) return std::nullopt;
  return Trouble{Trouble::Kind::Away,
                 "The adapter is there, but no sensor answers: it is asleep, without power or not "
                 "plugged in."};
}

Tried<SensorNews> Sensor::Connect() {
  setup_.reset();
  nextStored_ = 0;
  const Done connected = station_.Connect();
  if (!connected) return TroubleOf(connected.Why());
  if (auto trouble = Mute()) return *std::move(trouble);
  const auto count = Read(row::REC_CNT);
  if (!count) return Lost();
  SensorNews news;
  const SensorIdentity identity = PresentSensor(station_.Road());
  if (identity_ && *identity_ != identity) {
    news.replaced = SensorText(*identity_) + " was replaced by " + SensorText(identity) + ".";
  }
  news.restarted = *count < count_.value_or(0);
  identity_ = identity;
  count_ = *count;
  if (asSet_ == Words{}) {
    const auto words = ReadWords();
    if (!words) return Lost();
    asSet_ = *words;
  }
  return news;
}

std::optional<Sensor::Words> Sensor::ReadWords() {
  Words words;
  for (std::size_t index = 0; index < kRegisters; ++index) {
    if (!IsGuarded(index)) continue;
    words[index] = Read(setup::RowOf(index));
    if (!words[index]) return std::nullopt;
  }
  return words;
}

setup::Setup Sensor::SetupOf(const Words& words) {
  setup::Setup setup;
  for (std::size_t index = 0; index < kRegisters; ++index) {
    setup.registers[index] = static_cast<std::uint16_t>(words[index].value_or(0));
  }
  return setup;
}

std::vector<std::size_t> Sensor::Others(const Words& words) const {
  std::vector<std::size_t> others;
  for (std::size_t index = 0; index < kRegisters; ++index) {
    const auto& set = asSet_[index];
    if (set && *set != words[index]) others.push_back(index);
  }
  return others;
}

Tried<SensorNews> Sensor::Check() {
  if (auto trouble = Mute()) return *std::move(trouble);
  const auto words = ReadWords();
  const auto count = Read(row::REC_CNT);
  if (!words || !count) return Lost();
  SensorNews news;
  news.restarted = *count < count_.value_or(0);
  count_ = *count;
  const auto others = Others(*words);
  for (const std::size_t index : others) {
    const auto& set = asSet_[index];
    if (set && !station_.Road().registers.Write(setup::RowOf(index), *set)) return Lost();
  }
  if (!others.empty()) {
    setup_.reset();
    news.putBack = PutBackText(SetupOf(asSet_), SetupOf(*words), others);
    const auto after = ReadWords();
    if (!after) return Lost();
    if (!Others(*after).empty()) {
      return Trouble{Trouble::Kind::Silent,
                     "The sensor does not take its settings: " + news.putBack};
    }
  }
  return news;
}

std::optional<Trouble> Sensor::Configure(const Step& step, std::int16_t mode, std::int16_t option) {
  const RecordSetup wanted{.mode = mode,
                           .range = step.range,
                           .option = option,
                           .window = step.window,
                           .averages = step.averages};
  const auto same = [&](const RecordSetup& other) {
    return other.mode == wanted.mode && other.range == wanted.range &&
           other.option == wanted.option && other.window == wanted.window &&
           other.averages == wanted.averages;
  };
  if (setup_ && same(*setup_)) return std::nullopt;
  setup_.reset();
  Forget({setup::Register::RecCtrl, setup::Register::FftAvg});
  const auto configured = station_.Records().Configure(wanted);
  if (!configured) return TroubleOf(configured.Why());
  if (!same(*configured)) {
    return Trouble{Trouble::Kind::Silent, "The sensor does not take the settings of the plan."};
  }
  if (!Note({setup::Register::RecCtrl, setup::Register::FftAvg})) return Lost();
  setup_ = *configured;
  return std::nullopt;
}

void Sensor::Forget(std::initializer_list<setup::Register> registers) {
  for (const setup::Register which : registers) asSet_[Index(which)].reset();
}

bool Sensor::Note(std::initializer_list<setup::Register> registers) {
  return std::ranges::all_of(registers, [this](setup::Register which) {
    auto& word = asSet_[Index(which)];
    word = Read(setup::RowOf(Index(which)));
    return word.has_value();
  });
}

Tried<Record> Sensor::CaptureOne(const Step& step, std::int16_t option) {
  const std::int16_t mode = step.kind == StepKind::TimeRecord ? kTimeMode : kManual;
  if (auto trouble = Configure(step, mode, option)) return *std::move(trouble);
  patience_.Begin(LongestCapture(option, step.averages));
  auto captured = station_.Records().Capture();
  patience_.End();
  if (!captured) return TroubleOf(captured.Why());
  const Record& record = captured->record;
  if (!record.IsNew() || record.origin.stopped) {
    if (patience_.IsEnding()) {
      return Trouble{Trouble::Kind::Ended, "The capture under way was abandoned at the end."};
    }
    setup_.reset();
    return Trouble{Trouble::Kind::Silent,
                   "The capture was not done after three times its length: the sensor is asleep or "
                   "hangs."};
  }
  count_ = record.conditions.recordCount;
  return record;
}

Tried<std::vector<Record>> Sensor::Capture(const Step& step) {
  std::vector<Record> records;
  for (std::int16_t option = 3; option >= 0; --option) {
    if (step.kind != StepKind::Wide && option != step.option) continue;
    auto record = CaptureOne(step, option);
    if (auto* trouble = std::get_if<Trouble>(&record)) return std::move(*trouble);
    records.push_back(std::get<Record>(std::move(record)));
  }
  return records;
}

Tried<std::int32_t> Sensor::BeginSeries(const Step& step, std::chrono::seconds period) {
  RegisterAccess& registers = station_.Road().registers;
  if (!SendStop(registers)) return Lost();
  if (auto trouble = Configure(step, kTimer, step.option)) return *std::move(trouble);
  std::int32_t word = static_cast<std::int32_t>(period.count());
  if (period.count() > 255) {
    const bool isHours = period.count() % 3600 == 0;
    word = isHours ? 0x200 | static_cast<std::int32_t>(period.count() / 3600)
                   : 0x100 | static_cast<std::int32_t>(period.count() / 60);
  }
  Forget({setup::Register::RecPrd});
  if (!registers.Write(row::REC_PRD, word) || !Note({setup::Register::RecPrd})) return Lost();
  if (!registers.Write(row::COMMAND, CommandWord(CommandBit::ClearStatus))) return Lost();
  const auto count = Read(row::REC_CNT);
  if (!count || !registers.Write(row::COMMAND, CommandWord(CommandBit::RecordStartStop))) {
    return Lost();
  }
  count_ = *count;
  return *count;
}

Tried<std::int32_t> Sensor::Count() {
  const auto count = Read(row::REC_CNT);
  if (!count) return Lost();
  count_ = *count;
  return *count;
}

Tried<std::optional<NewestRecord>> Sensor::Newest() {
  const auto record = station_.Records().ReadPresent(RecordKind::Spectrum);
  if (!record) return TroubleOf(record.Why());
  const auto stored = Read(row::REC_FLSH_CNT);
  if (!stored) return Lost();
  const auto after = Count();
  if (const auto* trouble = std::get_if<Trouble>(&after)) return *trouble;
  if (std::get<std::int32_t>(after) != record->conditions.recordCount) {
    return std::optional<NewestRecord>{};
  }
  const bool isInFlash = std::exchange(stored_, *stored) != *stored;
  return std::optional{NewestRecord{*record, isInFlash}};
}

Tried<StoredRecords> Sensor::Stored() {
  const auto stored = Read(row::REC_FLSH_CNT);
  if (!stored) return Lost();
  stored_ = *stored;
  StoredRecords found{.count = count_.value_or(0)};
  for (; nextStored_ < std::min<int>(*stored, kMostInFlash); ++nextStored_) {
    auto count = Count();
    if (auto* trouble = std::get_if<Trouble>(&count)) return std::move(*trouble);
    if (std::get<std::int32_t>(count) != found.count) break;
    const auto record = station_.Records().ReadStored(nextStored_, RecordKind::Spectrum);
    if (!record) return TroubleOf(record.Why());
    count = Count();
    if (auto* trouble = std::get_if<Trouble>(&count)) return std::move(*trouble);
    // A sensor that captures meanwhile retrieves nothing, or mixes two records.
    if (std::get<std::int32_t>(count) != found.count) break;
    found.records.push_back(*record);
  }
  found.areAll = *count_ == found.count;
  found.count = *count_;
  if (found.areAll) nextStored_ = 0;
  return found;
}

}  // namespace kestrel::monitor
