// How record settings are written, read back, shown and restored.
// SPDX-License-Identifier: MIT
#include "acquisition/settings_exchange.h"

#include <algorithm>
#include <cmath>

#include "acquisition/readings.h"
#include "device/rec_ctrl.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int32_t kUnitsMask = 0x300;
constexpr std::int32_t kLastUnit = 2;
constexpr std::int32_t kRecords = 16;
constexpr int kSampleRateBits = 4;
constexpr double kWorkingSignMs = 200;  // long enough to be seen

}  // namespace

void SettingsExchange::Restore(const Shown& shown) {
  for (const auto& [setting, index] : shown.lists) view_.Select(setting, index);
  for (int bit = 0; bit < kSampleRateBits; ++bit) {
    view_.SetSampleRateBit(bit, (shown.rateBits >> bit & 1) != 0);
  }
  view_.SetPowerDown(shown.powerDown);
  Set_RecCtrl();
  Write_RecPrd();
  cbxFFTAvgs_Click();
  cbxRecPntr_Click();
}

void SettingsExchange::ReadSettings() {
  Display_RecCtrl();
  Read_FftAvg();
  Read_RecPrd();
  Read_RecPtrCnt();
  Read_FFTAVGS();
}

void SettingsExchange::ReadMainFormRegisters() {
  ReadSettings();
  status_.ReadStatus("ReadMainFormRegisters");
  alarms_.DisplaySpectralALarmsStatus();
}

int SettingsExchange::Accepted(Setting setting, int last, const char* complaint) {
  const int index = view_.Selected(setting);
  if (index >= 0 && index <= last) return index;
  messages_.Show(complaint + std::to_string(index));
  return -1;
}

void SettingsExchange::Set_RecCtrl() {
  const cRecCtrl earlier = *gRecCtrl;
  const auto code = [](int index) { return static_cast<std::int16_t>(index); };
  const int window = Accepted(Setting::Window, 2, "Error Windowing ComboBox box index = ");
  if (window >= 0) gRecCtrl->Windowing(code(window));

  double sum = 0;
  for (int bit = 0; bit < kSampleRateBits; ++bit) {
    if (view_.SampleRateBit(bit)) sum += std::exp2(8 + bit);
  }
  gRecCtrl->SampleRate(ToInteger(sum / std::exp2(8)));
  gRecCtrl->PowerDown(view_.PowerDownTicked() ? std::int16_t{1} : std::int16_t{0});

  const int range = Accepted(Setting::SignalRange, 3, "Error SignalRange ComboBox box index = ");
  if (range >= 0) gRecCtrl->RangeFS(code(range));
  const int storage = Accepted(Setting::Storage, 2, "Error Storage combo box index = ");
  if (storage >= 0) gRecCtrl->StrogeMethod(code(storage));
  const int mode = Accepted(Setting::RecMode, 2, "Error RecMode combo box index = ");
  if (mode >= 0) gRecCtrl->RecModeCode(code(mode));

  gRecCtrl->WriteRecCtrl();
  if (Display_RecCtrl()) return;
  gRecCtrl->PutBack(earlier);
  ShowLastRead();
}

// What a lost sensor seems to answer must not become the scale that the windows show.
bool SettingsExchange::Display_RecCtrl() {
  const cRecCtrl earlier = *gRecCtrl;
  bool read = gRecCtrl->ReadRecCtrl();
  const std::int16_t storage = read ? gRecCtrl->StrogeMethod() : std::int16_t{0};
  read = read && registers_.LastOutcome();
  if (!read) {
    gRecCtrl->PutBack(earlier);
    return false;
  }
  ShowCode(Setting::Window, gRecCtrl->Windowing());
  readBits_ = gRecCtrl->SampleRate();
  readPowerDown_ = gRecCtrl->PowerDown() != 0;
  ShowBoxes();
  ShowCode(Setting::SignalRange, gRecCtrl->RangeFS());
  ShowCode(Setting::Storage, storage);
  ShowCode(Setting::RecMode, gRecCtrl->RecModeCode());
  return true;
}

void SettingsExchange::ShowBoxes() {
  for (int bit = 0; bit < kSampleRateBits; ++bit) {
    view_.SetSampleRateBit(bit, (readBits_ >> bit & 1) != 0);
  }
  view_.SetPowerDown(readPowerDown_);
}

void SettingsExchange::ShowCode(Setting setting, std::int16_t code) {
  if (Show(setting, code)) return;
  view_.Deselect(setting);
  read_[setting] = -1;
}

bool SettingsExchange::Show(Setting setting, int index) {
  if (!view_.Select(setting, index)) return false;
  read_[setting] = index;
  return true;
}

void SettingsExchange::ShowLastRead() {
  for (const auto& [setting, index] : read_) {
    if (!view_.Select(setting, index)) view_.Deselect(setting);
  }
  if (read_.contains(Setting::RecMode)) ShowBoxes();
}

void SettingsExchange::Write_RecPrd() {
  registers_.WriteReg(row::REC_PRD,
                      view_.Selected(Setting::Interval) + view_.Selected(Setting::Units) * 256);
  if (!Read_RecPrd()) ShowLastRead();
}

bool SettingsExchange::Read_RecPrd() {
  const auto value = ReadWord(registers_, row::REC_PRD);
  if (!value) return false;
  const std::int32_t count = *value & 0xFF;
  if (!Show(Setting::Interval, count)) {
    messages_.Show("Error setting timer value cbx box\nValue = " + GeneralNumber(count) +
                   " is not valid.");
  }
  const std::int32_t unit = (*value & kUnitsMask) / 256;
  if (unit <= kLastUnit) {
    Show(Setting::Units, unit);
  } else {
    messages_.Show(
        "\n\nError reading Capture Period register\nTime units bit field (bits 8, 9) value = " +
        GeneralNumber(unit) + "\nThis value should not be greater than 2.");
  }
  return true;
}

bool SettingsExchange::Read_RecPtrCnt() {
  const auto pointer = ReadWord(registers_, row::REC_PNTR);
  if (!pointer) return false;
  if (*pointer < 0 || *pointer >= kRecords) {
    messages_.Show("\n\nError reading Record Pointer (REC_PNTR) register\nvalue = " +
                   GeneralNumber(*pointer) + "\nValid values are 0 to 15.");
  } else {
    Show(Setting::RecPntr, *pointer);
  }
  const auto count = ReadWord(registers_, row::REC_CNT);
  if (!count) return false;
  view_.SetRecCount(GeneralNumber(*count));
  return true;
}

bool SettingsExchange::Read_FFTAVGS() {
  const auto averages = ReadWord(registers_, row::FFT_AVG);
  if (!averages) return false;
  NoteAverages(*averages);
  if (*averages >= 1 && *averages <= 255) Show(Setting::FftAvgs, *averages);
  return true;
}

void SettingsExchange::Read_FftAvg() {
  const auto averages = ReadWord(registers_, row::FFT_AVG);
  if (averages) Show(Setting::FftAvgs, *averages);
}

void SettingsExchange::ShowWorkingCapPrd() {
  if (!signShown_) savedCaption_ = view_.FraCapCaption();
  signShown_ = true;
  view_.SetFraCapCaption("WRITE/READ CAPT_CTRL");
  delay_.DelayA(kWorkingSignMs);
  HideWorkingSign();
}

void SettingsExchange::HideWorkingSign() {
  if (!signShown_) return;
  signShown_ = false;
  view_.SetFraCapCaption(savedCaption_);
}

// The sensor averages at least one spectrum.
void SettingsExchange::cbxFFTAvgs_Click() {
  registers_.WriteReg(row::FFT_AVG, std::max(view_.Selected(Setting::FftAvgs), 1));
  if (!Read_FFTAVGS()) ShowLastRead();
}

void SettingsExchange::cbxRecPntr_Click() {
  registers_.WriteReg(row::REC_PNTR, view_.Selected(Setting::RecPntr));
  if (!Read_RecPtrCnt()) ShowLastRead();
}

}  // namespace kestrel
