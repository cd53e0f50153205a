// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "acquisition/record_settings.h"

#include <algorithm>
#include <cmath>

#include "device/capture_data.h"
#include "device/rec_ctrl.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int32_t kUnitsMask = 0x300;
constexpr std::int32_t kLastUnit = 2;
constexpr std::int32_t kRecords = 16;
constexpr int kSampleRateBits = 4;
constexpr double kWorkingSignMs = 200;  // long enough to be seen

void SetAverages(std::int32_t averages) {
  AvgExponent = averages > 0 ? std::log2(static_cast<double>(averages)) : 0;
}

}  // namespace

void RecordSettings::ReadMainFormRegisters() {
  Display_RecCtrl();
  Read_FftAvg();
  Read_RecPrd();
  Read_RecPtrCnt();
  Read_FFTAVGS();
  status_.ReadStatus("ReadMainFormRegisters");
  alarms_.DisplaySpectralALarmsStatus();
}

int RecordSettings::Accepted(Setting setting, int last, const char* complaint) {
  const int index = view_.Selected(setting);
  if (index >= 0 && index <= last) return index;
  messages_.Show(complaint + std::to_string(index));
  return -1;
}

void RecordSettings::Set_RecCtrl() {
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
  Display_RecCtrl();
}

void RecordSettings::Display_RecCtrl() {
  gRecCtrl->ReadRecCtrl();
  if (!RegisterAccess::Usable()) return;
  ShowCode(Setting::Window, gRecCtrl->Windowing());
  for (int bit = 0; bit < kSampleRateBits; ++bit) {
    view_.SetSampleRateBit(bit, (gRecCtrl->SampleRate() >> bit & 1) != 0);
  }
  view_.SetPowerDown(gRecCtrl->PowerDown() != 0);
  ShowCode(Setting::SignalRange, gRecCtrl->RangeFS());
  ShowCode(Setting::Storage, gRecCtrl->StrogeMethod());
  ShowCode(Setting::RecMode, gRecCtrl->RecModeCode());
}

void RecordSettings::ShowCode(Setting setting, std::int16_t code) {
  if (!view_.Select(setting, code)) view_.Deselect(setting);
}

void RecordSettings::Write_RecPrd() {
  registers_.WriteReg(row::REC_PRD,
                      view_.Selected(Setting::Interval) + view_.Selected(Setting::Units) * 256);
  Read_RecPrd();
}

void RecordSettings::Read_RecPrd() {
  registers_.ReadReg(row::REC_PRD);
  if (!RegisterAccess::Usable()) return;
  const std::int32_t value = RegValue;
  const std::int32_t count = value & 0xFF;
  if (!view_.Select(Setting::Interval, count)) {
    messages_.Show("Error setting timer value cbx box\nValue = " + GeneralNumber(count) +
                   " is not valid.");
  }
  const std::int32_t unit = (value & kUnitsMask) / 256;
  if (unit > kLastUnit) {
    messages_.Show(
        "\n\nError reading Capture Period register\nTime units bit field (bits 8, 9) value = " +
        GeneralNumber(unit) + "\nThis value should not be greater than 2.");
    return;
  }
  view_.Select(Setting::Units, unit);
}

void RecordSettings::Read_RecPtrCnt() {
  registers_.ReadReg(row::REC_PNTR);
  if (!RegisterAccess::Usable()) return;
  if (RegValue < 0 || RegValue >= kRecords) {
    messages_.Show("\n\nError reading Record Pointer (REC_PNTR) register\nvalue = " +
                   GeneralNumber(RegValue) + "\nValid values are 0 to 15.");
  } else {
    view_.Select(Setting::RecPntr, RegValue);
  }
  registers_.ReadReg(row::REC_CNT);
  if (!RegisterAccess::Usable()) return;
  view_.SetRecCount(GeneralNumber(RegValue));
}

void RecordSettings::Read_FFTAVGS() {
  registers_.ReadReg(row::FFT_AVG);
  if (!RegisterAccess::Usable()) return;
  SetAverages(RegValue);
  if (RegValue >= 1 && RegValue <= 255) view_.Select(Setting::FftAvgs, RegValue);
}

void RecordSettings::Read_FftAvg() {
  registers_.ReadReg(row::FFT_AVG);
  if (!RegisterAccess::Usable()) return;
  view_.Select(Setting::FftAvgs, RegValue);
}

void RecordSettings::ShowWorkingCapPrd() {
  if (!signShown_) savedCaption_ = view_.FraCapCaption();
  signShown_ = true;
  view_.SetFraCapCaption("WRITE/READ CAPT_CTRL");
  delay_.DelayA(kWorkingSignMs);
  HideWorkingSign();
}

void RecordSettings::HideWorkingSign() {
  if (!signShown_) return;
  signShown_ = false;
  view_.SetFraCapCaption(savedCaption_);
}

// The sensor averages at least one spectrum.
void RecordSettings::cbxFFTAvgs_Click() {
  registers_.WriteReg(row::FFT_AVG, std::max(view_.Selected(Setting::FftAvgs), 1));
  Read_FFTAVGS();
}

void RecordSettings::cbxRecPntr_Click() {
  registers_.WriteReg(row::REC_PNTR, view_.Selected(Setting::RecPntr));
  Read_RecPtrCnt();
}

}  // namespace kestrel
