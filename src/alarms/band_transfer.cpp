// Bands read, written and cleared one by one, the user's handlers running between two.
// SPDX-License-Identifier: MIT
#include "alarms/band_transfer.h"

#include <vector>

#include "regmap/command_words.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int32_t kClearBands = CommandWord(CommandBit::ClearAlarmBands);
constexpr std::int32_t kSaveBand = CommandWord(CommandBit::SaveAlarmBand);
constexpr std::int32_t kRetrieveBand = CommandWord(CommandBit::RetrieveAlarmBand);

// The sensor brings a band from its flash into the registers in this time.
constexpr float kRetrieveMs = 20;
// Between loading the pointer and saving.
constexpr float kBeforeSaveMs = 10;
constexpr float kClearMs = 30;

constexpr const char* kNoSensor = "No sensor can be reached.";

std::array<std::int16_t, kBandFields.size()> BandRows() {
  return {row::ALM_F_LOW,  row::ALM_F_HIGH, row::ALM_X_MAG1, row::ALM_Y_MAG1,
          row::ALM_Z_MAG1, row::ALM_X_MAG2, row::ALM_Y_MAG2, row::ALM_Z_MAG2};
}

// What a register holds after a value was written to it: its two bytes.
std::int32_t RegisterWord(std::int32_t value) {
  return (value / 256 & 0xFF) * 256 + (value & 0xFF);
}

std::int32_t Pointer(int band, int option) {
  return band + 256 * option;
}

bool IsOption(std::int16_t option) {
  return option >= 0 && option < kSampleRateOptions;
}

}  // namespace

// One transfer: its progress, what it moved, and how it ended.
class BandTransfer::Run {
 public:
  Run(BandTransfer& transfer, const std::string& activity, int options)
      : transfer_(transfer), activity_(activity), total_(options * kAlarmBands) {
    transfer_.view_.ShowTransfer(activity_, 0, total_);
    transfer_.running_ = true;
    transfer_.cancelled_ = false;
  }
  ~Run() {
    transfer_.view_.HideTransfer();
    transfer_.running_ = false;
    transfer_.cancelled_ = false;
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  // Between two bands: shows the progress and sees whether the user wants no more.
  bool GoOn() {
    transfer_.view_.ShowTransfer(activity_, Count(), total_);
    transfer_.loop_.Yield();
    return !transfer_.cancelled_ && transfer_.registers_.Reachable();
  }
  void Moved(int band, int option) { done_.push_back(Pointer(band, option)); }

  // "24 bands read.", or else why not all of them and, behind `listTitle`, which.
  [[nodiscard]] std::string Outcome(const std::string& done, const std::string& listTitle) const {
    if (Count() == total_) return std::to_string(total_) + " bands " + done + ".";
    return activity_ + " " + Reason() + ". " + listTitle + Bands() + ".";
  }

  // "cancelled" or what else kept it from its end.
  [[nodiscard]] std::string Reason() const {
    return transfer_.registers_.Reachable() ? "cancelled" : "failed: the sensor was lost";
  }

 private:
  [[nodiscard]] int Count() const { return static_cast<int>(done_.size()); }

  // "option 0 bands 1 to 6, option 1 band 1", or "none". Bands go in order within an option.
  [[nodiscard]] std::string Bands() const {
    std::string text;
    for (std::size_t first = 0; first < done_.size();) {
      std::size_t next = first;
      while (next < done_.size() && done_[next] / 256 == done_[first] / 256) ++next;
      const std::string last = std::to_string(done_[next - 1] % 256);
      text += (text.empty() ? "option " : ", option ") + std::to_string(done_[first] / 256) +
              (next - first == 1 ? " band " + last
                                 : " bands " + std::to_string(done_[first] % 256) + " to " + last);
      first = next;
    }
    return text.empty() ? "none" : text;
  }

  BandTransfer& transfer_;
  std::string activity_;
  int total_;
  std::vector<int> done_;  // pointers
};

void BandTransfer::ReadFlash(std::int16_t option) {
  if (!IsOption(option)) {
    RefuseOption("ReadFlash()", "StatusRateOption  = ", "StatusRtaeOption", option);
    return;
  }
  if (running_ || !SensorThere()) return;
  Run run(*this, "Reading", 1);
  ReadOption(run, option);
  view_.SetMessage(run.Outcome("read", "Read: "));
}

void BandTransfer::ReadAllFlash() {
  if (running_ || !SensorThere()) return;
  Run run(*this, "Reading", kSampleRateOptions);
  for (std::int16_t option = 0; option < kSampleRateOptions; ++option) {
    if (!ReadOption(run, option)) break;
  }
  view_.DisplaySpectrum(0);
  view_.SetMessage(run.Outcome("read", "Read: "));
}

void BandTransfer::Write6BandsToFlash(std::int16_t option) {
  if (!IsOption(option)) {
    RefuseOption("WriteBandsFlash()", "Status Rate Option  = ", "Status Rate Option", option);
    return;
  }
  if (running_ || !SensorThere()) return;
  Run run(*this, "Writing", 1);
  WriteOption(run, option);
  view_.SetMessage(run.Outcome("written", "Written: ") + Misfits(option, option));
}

void BandTransfer::cmdWriteAll_Click() {
  if (running_ || !SensorThere()) return;
  Run run(*this, "Writing", kSampleRateOptions);
  const bool cleared = ClearSensor();
  if (cleared) delay_.Delay(float{kClearMs});
  for (std::int16_t option = 0; cleared && option < kSampleRateOptions; ++option) {
    if (!WriteOption(run, option)) break;
  }
  view_.SetMessage(
      cleared
          ? run.Outcome("written", "Sensor cleared; written: ") + Misfits(0, kSampleRateOptions - 1)
          : "Writing " + run.Reason() + " while it was cleared; what it holds is not known.");
}

void BandTransfer::cmdClearAll_Click() {
  if (running_) return;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const int field : kBandFields) ChangeableBands()(field, band, option) = 0;
    }
  }
  const bool there = registers_.Reachable();
  const bool cleared = ClearSensor();
  view_.DisplaySpectrum(0);
  if (cleared) {
    view_.SetMessage("All bands cleared, in the sensor too.");
  } else {
    view_.SetMessage(std::string(there ? "Clearing failed: the sensor was lost." : kNoSensor) +
                     " Only this table is cleared.");
  }
}

std::optional<std::int32_t> BandTransfer::InSensor(int field, int band, int option) const {
  if (option < 0 || option >= kSampleRateOptions || band < 1 || band > kAlarmBands) {
    return std::nullopt;
  }
  const bool known = known_[static_cast<std::size_t>(option)][static_cast<std::size_t>(band)];
  return known ? std::optional(sensor_(field, band, option)) : std::nullopt;
}

bool BandTransfer::ReadOption(Run& run, std::int16_t option) {
  bool whole = true;
  for (int band = 1; band <= kAlarmBands && whole; ++band) {
    whole = run.GoOn() && ReadBand(band, option);
    if (whole) run.Moved(band, option);
  }
  view_.DisplaySpectrum(option);
  return whole;
}

bool BandTransfer::WriteOption(Run& run, std::int16_t option) {
  for (int band = 1; band <= kAlarmBands; ++band) {
    if (!run.GoOn() || !WriteBand(band, option)) return false;
    run.Moved(band, option);
  }
  return true;
}

// The band's earlier values stay in the table unless all of it arrives.
bool BandTransfer::ReadBand(int band, int option) {
  if (!Send(row::ALM_PNTR, Pointer(band, option)) || !Send(row::COMMAND, kRetrieveBand)) {
    return false;
  }
  delay_.Delay(float{kRetrieveMs});
  const auto rows = BandRows();
  std::array<std::int32_t, kBandFields.size()> values{};
  std::array<std::int32_t, kBandFields.size()> words{};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto reading = registers_.Read(rows[i]);
    if (!reading) return false;
    values[i] = reading->value;
    words[i] = reading->raw;
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    ChangeableBands()(kBandFields[i], band, option) = values[i];
    sensor_(kBandFields[i], band, option) = values[i];
    read_(kBandFields[i], band, option) = values[i];
    words_(kBandFields[i], band, option) = words[i];
  }
  known_.at(static_cast<std::size_t>(option)).at(static_cast<std::size_t>(band)) = true;
  return true;
}

bool BandTransfer::WriteBand(int band, int option) {
  bool& known = known_.at(static_cast<std::size_t>(option)).at(static_cast<std::size_t>(band));
  known = false;
  const auto rows = BandRows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const int field = kBandFields[i];
    const std::int32_t value = AlarmBandTable(field, band, option);
    // What came from the sensor goes back as it came, bits that are not decoded included.
    const bool unchanged = value == read_(field, band, option);
    if (!Send(rows[i], unchanged ? words_(field, band, option) : value)) return false;
    sensor_(field, band, option) = unchanged ? value : RegisterWord(value);
  }
  if (!Send(row::ALM_PNTR, Pointer(band, option))) return false;
  delay_.Delay(float{kBeforeSaveMs});
  known = Send(row::COMMAND, kSaveBand);
  return known;
}

bool BandTransfer::ClearSensor() {
  if (!registers_.Reachable()) return false;
  const bool cleared = Send(row::COMMAND, kClearBands);
  sensor_ = {};
  for (auto& option : known_) option.fill(cleared);
  return cleared;
}

bool BandTransfer::Send(std::int16_t row, std::int32_t value) {
  return registers_.Write(row, value);
}

// Of a number that no register takes, the sensor has the low 16 bits.
std::string BandTransfer::Misfits(int firstOption, int lastOption) const {
  int misfits = 0;
  for (int option = firstOption; option <= lastOption; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const int field : kBandFields) {
        const std::int32_t value = AlarmBandTable(field, band, option);
        misfits += InSensor(field, band, option) && RegisterWord(value) != value ? 1 : 0;
      }
    }
  }
  return misfits == 0 ? ""
                      : " Values that do not fit their registers: " + std::to_string(misfits) +
                            "; of these the sensor holds another number, see the marked cells.";
}

bool BandTransfer::SensorThere() {
  if (registers_.Reachable()) return true;
  view_.SetMessage(kNoSensor);
  return false;
}

void BandTransfer::RefuseOption(const char* routine, const char* name, const char* valid,
                                std::int16_t option) {
  messages_.Show(std::string("Error...\nsub routine = ") + routine + "\n" + name +
                 std::to_string(option) + "\nValid values for " + valid + " Are 0,1,2,3\n");
}

}  // namespace kestrel
