// REC_INFO read, and its four fields in words.
// SPDX-License-Identifier: MIT
#include "device/rec_info.h"

#include <array>

#include "device/field.h"
#include "regmap/register_table.h"

namespace kestrel {

namespace {

std::unique_ptr<cRecInfo> shared;

}  // namespace

const std::unique_ptr<cRecInfo>& gRecInfo = shared;

void MakeRecInfo(RegisterAccess& registers) {
  shared = std::make_unique<cRecInfo>(registers);
}

void DropRecInfo() {
  shared.reset();
}

namespace {

constexpr Field kSampleRateOption{14, 0xC000};
constexpr Field kWindowing{12, 0x3000};
constexpr Field kSignalRange{10, 0x0C00};
constexpr Field kFftAverages{0, 0x01FF};

constexpr std::array<const char*, 3> kWindows{"Rectangular", "Hanning [default]", "Flat Top"};
constexpr std::array<const char*, 4> kRanges{"0 - 1g", "0 - 5g", "0 - 20g", "0 - 70g [default]"};

}  // namespace

// The text begins "SR0" whatever the code; the divisor is 8 to the power of the code.
std::string SampleRateText(std::int16_t code) {
  return "SR0 (FS / " + std::to_string(1 << 3 * code) + ")";
}

std::string WindowText(std::int16_t code) {
  const auto at = static_cast<std::size_t>(code);
  return at < kWindows.size() ? kWindows[at] : "UK  v=" + std::to_string(code);
}

std::array<cBitFieldProp, 4> DescribeRecInfo(std::int32_t word) {
  cBitFieldProp option = DescribeField(kSampleRateOption, word, "Sample Rate Option");
  option.SettingDecription(SampleRateText(option.BFValue()));
  cBitFieldProp window = DescribeField(kWindowing, word, "Windowing");
  window.SettingDecription(WindowText(window.BFValue()));
  const cBitFieldProp range = DescribeField(kSignalRange, word, "Signal Range", kRanges);
  // A count of 0 means one average; its setting text still shows what was read.
  cBitFieldProp averages = DescribeField(kFftAverages, word, "FFT Averages");
  averages.SettingDecription(std::to_string(averages.BFValue()));
  if (averages.BFValue() == 0) averages.BFValue(1);
  return {option, window, range, averages};
}

bool cRecInfo::ReadRec_Info() {
  const bool read = registers_.Read(row::REC_INFO).has_value();
  Decode(RegValue);
  return read;
}

void cRecInfo::Decode(std::int32_t word) {
  word_ = static_cast<double>(word);
  const auto fields = DescribeRecInfo(word);
  sampleRateOption_ = fields[0];
  windowing_ = fields[1];
  signalRange_ = fields[2];
  fftAverages_ = fields[3];
}

}  // namespace kestrel
