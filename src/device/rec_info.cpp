// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "device/rec_info.h"

#include <array>

#include "device/field.h"
#include "regmap/register_table.h"

namespace kestrel {

std::unique_ptr<cRecInfo> gRecInfo;

namespace {

constexpr Field kSampleRateOption{14, 0xC000};
constexpr Field kWindowing{12, 0x3000};
constexpr Field kSignalRange{10, 0x0C00};
constexpr Field kFftAverages{0, 0x01FF};

constexpr std::array<const char*, 3> kWindows{"Rectangular", "Hanning [default]", "Flat Top"};
constexpr std::array<const char*, 4> kRanges{"0 - 1g", "0 - 5g", "0 - 20g", "0 - 70g [default]"};

cBitFieldProp Describe(const char* bits, const char* title, std::int16_t value,
                       const std::string& setting) {
  cBitFieldProp field;
  field.BFRange(bits);
  field.BFTitle(title);
  field.BFValue(value);
  field.SettingDecription(setting);
  return field;
}

// The text begins "SR0" whatever the code; the divisor is 8 to the power of the code.
std::string SampleRateText(std::int16_t code) {
  return "SR0 (FS / " + std::to_string(1 << 3 * code) + ")";
}

std::string WindowText(std::int16_t code) {
  const auto at = static_cast<std::size_t>(code);
  return at < kWindows.size() ? kWindows[at] : "UK  v=" + std::to_string(code);
}

}  // namespace

void cRecInfo::ReadRec_Info() {
  registers_.ReadReg(row::REC_INFO);
  const std::int32_t word = RegValue;
  word_ = static_cast<double>(word);

  const std::int16_t option = kSampleRateOption.Take(word);
  sampleRateOption_ = Describe("15:14", "Sample Rate Option", option, SampleRateText(option));
  const std::int16_t window = kWindowing.Take(word);
  windowing_ = Describe("13:12", "Windowing", window, WindowText(window));
  const std::int16_t range = kSignalRange.Take(word);
  signalRange_ =
      Describe("11:10", "Signal Range", range, kRanges.at(static_cast<std::size_t>(range)));
  // A count of 0 means one average; its setting text still shows what was read.
  const std::int16_t averages = kFftAverages.Take(word);
  fftAverages_ = Describe("8:0", "FFT Averages", averages == 0 ? std::int16_t{1} : averages,
                          std::to_string(averages));
}

}  // namespace kestrel
