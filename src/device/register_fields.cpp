// Which fields each register has, and what their codes are called.
// SPDX-License-Identifier: MIT
#include "device/register_fields.h"

#include <array>
#include <string_view>

#include "device/alarm_flags.h"
#include "device/alm_ctrl.h"
#include "device/field.h"
#include "device/global_commands.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "numeric/conversions.h"
#include "record/status_flags.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

using Fields = std::vector<cBitFieldProp>;

constexpr std::array<const char*, 4> kDioFunctions{"General-purpose I/O", "Alarm",
                                                   "Capture trigger", "Busy"};
constexpr std::array<const char*, 2> kPolarities{"Active low", "Active high"};
constexpr std::array<const char*, 2> kDirections{"Input", "Output"};
constexpr std::array<const char*, 2> kLevels{"Low", "High"};
constexpr std::array<const char*, 2> kWarnings{kStatusFlagClear, "Warning"};
constexpr std::array<const char*, 2> kFaults{kStatusFlagClear, "Fault"};
constexpr std::array<const char*, 2> kCommandBit{"", "Start"};

constexpr Field Bit(int bit) {
  return {bit, 1 << bit};
}

Fields DescribeDioCtrl(std::int32_t word) {
  return {DescribeField({4, 0x0030}, word, "DIO2 Function", kDioFunctions),
          DescribeField({2, 0x000C}, word, "DIO1 Function", kDioFunctions),
          DescribeField(Bit(1), word, "DIO2 Polarity", kPolarities),
          DescribeField(Bit(0), word, "DIO1 Polarity", kPolarities)};
}

Fields DescribeGpioCtrl(std::int32_t word) {
  return {DescribeField(Bit(9), word, "GPIO2 Output Level", kLevels),
          DescribeField(Bit(8), word, "GPIO1 Output Level", kLevels),
          DescribeField(Bit(1), word, "GPIO2 Direction", kDirections),
          DescribeField(Bit(0), word, "GPIO1 Direction", kDirections)};
}

Fields DescribeStatus(std::int32_t word) {
  Fields fields;
  for (auto bit = static_cast<int>(kStatusFlags) - 1; bit >= 0; --bit) {
    const StatusFlag& flag = kStatusFlagTable.at(static_cast<std::size_t>(bit));
    fields.push_back(
        DescribeField(Bit(bit), word, flag.name, std::array{kStatusFlagClear, flag.whenSet}));
  }
  return fields;
}

// The items of the command list begin with the number of their bit.
std::string CommandName(std::size_t bit) {
  const std::string_view item = kCommandItems.at(bit);
  return std::string(item.substr(item.find_first_not_of("0123456789 ")));
}

Fields DescribeCommand(std::int32_t word) {
  Fields fields;
  for (std::size_t bit = kCommandItems.size(); bit-- > 0;) {
    fields.push_back(
        DescribeField(Bit(static_cast<int>(bit)), word, CommandName(bit), kCommandBit));
  }
  return fields;
}

Fields DescribeRecPrd(std::int32_t word) {
  return {DescribeField({8, 0x0300}, word, "Time Unit", kTimeUnits),
          DescribeField({0, 0x00FF}, word, "Count")};
}

Fields DescribeAlmPntr(std::int32_t word) {
  return {DescribeField({8, 0xFF00}, word, "Sample Rate Option"),
          DescribeField({0, 0x00FF}, word, "Band")};
}

Fields DescribeAlarmStatus(std::int32_t word) {
  constexpr int kBands = 6;
  Fields fields;
  for (int band = kBands; band >= 1; --band) {
    const std::string name = "Band " + std::to_string(band);
    fields.push_back(DescribeField(Bit(FaultBit(band)), word, name + " Alarm 2", kFaults));
    fields.push_back(DescribeField(Bit(WarningBit(band)), word, name + " Alarm 1", kWarnings));
  }
  fields.push_back(DescribeField(kAlarmBandNumber, word, "Band"));
  return fields;
}

Fields DescribeRecordInfo(std::int32_t word) {
  const auto fields = DescribeRecInfo(word);
  return {fields.begin(), fields.end()};
}

struct Describer {
  const std::int16_t& row;
  Fields (*describe)(std::int32_t word);
};

const std::array kDescribers{Describer{row::REC_CTRL, DescribeRecCtrl},
                             Describer{row::REC_PRD, DescribeRecPrd},
                             Describer{row::ALM_PNTR, DescribeAlmPntr},
                             Describer{row::ALM_CTRL, DescribeAlmCtrl},
                             Describer{row::DIO_CTRL, DescribeDioCtrl},
                             Describer{row::GPIO_CTRL, DescribeGpioCtrl},
                             Describer{row::STATUS, DescribeStatus},
                             Describer{row::COMMAND, DescribeCommand},
                             Describer{row::ALM_X_STAT, DescribeAlarmStatus},
                             Describer{row::ALM_Y_STAT, DescribeAlarmStatus},
                             Describer{row::ALM_Z_STAT, DescribeAlarmStatus},
                             Describer{row::REC_INFO, DescribeRecordInfo}};

}  // namespace

std::string BitText(std::int32_t word) {
  std::string text;
  for (int bit = 15; bit >= 0; --bit) {
    text += (word >> bit & 1) != 0 ? '1' : '0';
    if (bit % 4 == 0 && bit > 0) text += ' ';
  }
  return text;
}

std::vector<cBitFieldProp> DescribeRegister(std::int16_t row, std::int32_t word) {
  for (const Describer& describer : kDescribers) {
    if (describer.row == row) return describer.describe(word);
  }
  return {};
}

std::string FieldText(const cBitFieldProp& field) {
  const std::string value = std::to_string(field.BFValue());
  const std::string& setting = field.SettingDecription();
  return setting.empty() || setting == value ? value : value + "  " + setting;
}

std::int32_t SignedWord(std::int16_t row, std::int32_t word) {
  return RegSigned[row] ? NarrowToInteger(word) : word & 0xFFFF;
}

}  // namespace kestrel
