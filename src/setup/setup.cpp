// Words of a set-up as people read them.
// SPDX-License-Identifier: MIT
#include "setup/setup.h"

#include "device/rec_ctrl.h"
#include "device/register_fields.h"
#include "numeric/number_format.h"
#include "numeric/number_texts.h"
#include "record/frequency.h"
#include "regmap/register_table.h"

namespace kestrel::setup {
namespace {

constexpr std::uint16_t kTemperatureWatched = 0x0010;  // of ALM_CTRL: else the supply
constexpr std::size_t kBins = 2;                       // the fields of a band before its thresholds
constexpr int kHexDigits = 4;

std::string HexText(std::uint16_t word) {
  const std::string digits = Hex(std::int32_t{word});
  return "0x" + std::string(kHexDigits - digits.size(), '0') + digits;
}

std::string NullText(std::int16_t row, std::uint16_t word) {
  const auto steps = static_cast<std::int16_t>(word);
  return std::to_string(steps) + " (" + FixedNumber(steps * static_cast<double>(RegScale[row]), 4) +
         " g)";
}

// The limit is compared with the measured word, and scaled like it.
std::string LimitText(std::uint16_t word, std::uint16_t almCtrl) {
  const bool isTemperature = (almCtrl & kTemperatureWatched) != 0;
  const std::int16_t row = isTemperature ? row::TEMP_OUT : row::SUPPLY_OUT;
  const double value = static_cast<std::int16_t>(word) * static_cast<double>(RegScale[row]) +
                       static_cast<double>(RegOffset[row]);
  return std::to_string(word) + " (" + FixedNumber(value, isTemperature ? 1 : 3) +
         (isTemperature ? " \u00B0C)" : " V)");
}

std::string FieldsText(std::int16_t row, std::uint16_t word) {
  std::string text;
  for (const cBitFieldProp& field : DescribeRegister(row, word)) {
    text += (text.empty() ? "" : ", ") + field.BFTitle() + " " + FieldWords(field);
  }
  return HexText(word) + (text.empty() ? "" : ": " + text);
}

}  // namespace

std::int16_t RowOf(std::size_t index) {
  const std::array<std::int16_t, kRegisters> rows{
      row::X_NULL,    row::Y_NULL,    row::Z_NULL,   row::FFT_AVG,  row::REC_PNTR, row::REC_PRD,
      row::ALM_S_MAG, row::GPIO_CTRL, row::DIO_CTRL, row::ALM_CTRL, row::ST_CTRL,  row::REC_CTRL};
  return rows.at(index);
}

std::uint16_t LargestOf(std::size_t index) {
  return static_cast<std::uint16_t>((1U << static_cast<unsigned>(RegBits[RowOf(index)])) - 1U);
}

std::uint16_t WithoutInputs(std::uint16_t gpioCtrl, std::uint16_t dioCtrl) {
  unsigned word = gpioCtrl;
  for (unsigned line = 0; line < 2; ++line) {
    const bool isGpio = (dioCtrl >> (2 + 2 * line) & 3) == 0;
    const bool isOutput = (gpioCtrl >> line & 1) != 0;
    if (isGpio && !isOutput) word &= ~(0x100U << line);
  }
  return static_cast<std::uint16_t>(word);
}

std::string BandName(int option, int band) {
  return "option " + std::to_string(option) + ", band " + std::to_string(band);
}

std::string FieldWords(const cBitFieldProp& field) {
  std::string text = FieldText(field);
  const std::size_t gap = text.find("  ");
  if (gap != std::string::npos) text.replace(gap, 1, ":");
  return text;
}

std::string WordText(const Setup& setup, std::size_t index) {
  const std::uint16_t word = setup.registers.at(index);
  switch (static_cast<Register>(index)) {
    case Register::XNull:
    case Register::YNull:
    case Register::ZNull:
      return NullText(RowOf(index), word);
    case Register::FftAvg:
    case Register::RecPntr:
      return std::to_string(word);
    case Register::AlmSMag:
      return LimitText(word, setup.Of(Register::AlmCtrl));
    default:
      return FieldsText(RowOf(index), word);
  }
}

std::string BandText(const Setup& setup, int option, int band, std::size_t field) {
  const std::uint16_t word = setup.Band(option, band).at(field);
  const std::string number = std::to_string(word);
  if (field < kBins) {
    return number + " (" + (word == 0 ? "0 Hz" : analysis::HertzText(word * BinWidth(option))) +
           ")";
  }
  const auto range = static_cast<std::int16_t>(setup.Of(Register::RecCtrl) >> 4U & 3U);
  return number + " (" + (word == 0 ? "0" : analysis::SignificantText(word * GPerLsb(range))) +
         " g)";
}

}  // namespace kestrel::setup
