// How REC_CTRL is composed and decoded.
// SPDX-License-Identifier: MIT
#include "device/rec_ctrl.h"

#include <array>

#include "device/field.h"
#include "device/rec_info.h"
#include "numeric/conversions.h"
#include "regmap/register_table.h"

namespace kestrel {

namespace {

std::unique_ptr<cRecCtrl> shared;

}  // namespace

const std::unique_ptr<cRecCtrl>& gRecCtrl = shared;

void MakeRecCtrl(RegisterAccess& registers) {
  shared = std::make_unique<cRecCtrl>(registers);
}

void DropRecCtrl() {
  shared.reset();
}

namespace {

constexpr Field kWindowing{12, 0x3000};
constexpr Field kSampleRate{8, 0x0F00};
constexpr Field kPowerDown{7, 0x0080};
constexpr Field kRange{4, 0x0030};
constexpr Field kStorage{2, 0x000C};
constexpr Field kRecMode{0, 0x0003};

constexpr std::array<SignalRange, 4> kRanges{
    {{"0 - 1g", 0.015259}, {"0 - 5g", 0.0763}, {"0 - 20g", 0.3052}, {"0 - 70g", 1.1921}}};

constexpr const char* kTimeMode = "Manual time";
constexpr std::array<const char*, 4> kRecModes{"Manual", "Timer", kTimeMode, "Reserved"};

constexpr double kFullScaleCode = 65535;

constexpr std::array<const char*, 2> kOffOn{"Off", "On"};
constexpr std::int16_t kLastSampleRate = 3;

}  // namespace

const SignalRange* FindSignalRange(int code) {
  const auto at = static_cast<std::size_t>(code);
  return code >= 0 && at < kRanges.size() ? &kRanges[at] : nullptr;
}

double GPerLsb(std::int16_t range) {
  return kRanges.at(static_cast<std::size_t>(range)).milliG / 1000;
}

std::vector<cBitFieldProp> DescribeRecCtrl(std::int32_t word) {
  cBitFieldProp window = DescribeField(kWindowing, word, "Windowing");
  window.SettingDecription(WindowText(window.BFValue()));
  cBitFieldProp rate = DescribeField(kSampleRate, word, "Sample Rate Option");
  if (rate.BFValue() <= kLastSampleRate) rate.SettingDecription(SampleRateText(rate.BFValue()));
  cBitFieldProp range = DescribeField(kRange, word, "Signal Range");
  if (const SignalRange* known = FindSignalRange(range.BFValue()))
    range.SettingDecription(known->text);
  return {window,
          rate,
          DescribeField(kPowerDown, word, "Power-down", kOffOn),
          range,
          DescribeField(kStorage, word, "Storage Method", kStorageMethods),
          DescribeField(kRecMode, word, "Record Mode", kRecModes)};
}

void cRecCtrl::PowerDown(std::int16_t /*ignored*/) {
  powerDown_ = gRecCtrl ? gRecCtrl->PowerDown() : std::int16_t{0};
}

std::int16_t cRecCtrl::StrogeMethod() {
  ReadRecCtrl();
  return strogeMethod_;
}

std::int32_t cRecCtrl::Word() const {
  return ToLong(kWindowing.Place(windowing_) + kSampleRate.Place(sampleRate_) +
                kPowerDown.Place(powerDown_) + kRange.Place(rangeFS_) +
                kStorage.Place(strogeMethod_) + kRecMode.Place(recModeCode_));
}

bool cRecCtrl::WriteRecCtrl() {
  return registers_->Write(row::REC_CTRL, Word());
}

bool cRecCtrl::ReadRecCtrl() {
  const bool read = registers_->Read(row::REC_CTRL).has_value();
  const std::int32_t word = RegValue;
  windowing_ = kWindowing.Take(word);
  sampleRate_ = kSampleRate.Take(word);
  powerDown_ = kPowerDown.Take(word);
  rangeFS_ = kRange.Take(word);
  const SignalRange* range = FindSignalRange(RangeFS());
  if (range != nullptr) rangeString_ = range->text;
  strogeMethod_ = kStorage.Take(word);
  recModeCode_ = kRecMode.Take(word);
  recModeText_ = kRecModes.at(static_cast<std::size_t>(recModeCode_));
  if (range != nullptr) gLsb_ = range->milliG / 1000;
  if (recModeText_ == kTimeMode) gLsb_ *= 2;
  gMax_ = gLsb_ * kFullScaleCode;
  return read;
}

}  // namespace kestrel
