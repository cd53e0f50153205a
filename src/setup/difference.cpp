// Set-ups compared register by register, field by field, band by band.
// SPDX-License-Identifier: MIT
#include "setup/difference.h"

#include <algorithm>

#include "device/register_fields.h"
#include "numeric/number_format.h"

namespace kestrel::setup {
namespace {

// "13:12", or "7".
unsigned BitsOf(const std::string& range) {
  const auto colon = range.find(':');
  const unsigned high = static_cast<unsigned>(std::stoul(range));
  const unsigned low = colon == std::string::npos
                           ? high
                           : static_cast<unsigned>(std::stoul(range.substr(colon + 1)));
  return (2U << high) - (1U << low);
}

// Field by field; bits without a meaning count as one field.
std::vector<Difference> FieldDifferences(const std::string& name, std::int16_t row,
                                         std::uint16_t saved, std::uint16_t now) {
  const auto before = DescribeRegister(row, saved);
  const auto after = DescribeRegister(row, now);
  std::vector<Difference> all;
  unsigned known = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    known |= BitsOf(before[i].BFRange());
    if (before[i].BFValue() == after[i].BFValue()) continue;
    all.push_back({name + ", " + before[i].BFTitle(), FieldWords(before[i]), FieldWords(after[i])});
  }
  const unsigned unknown = (unsigned{saved} ^ now) & ~known & 0xFFFFU;
  if (unknown == 0) return all;
  const auto hex = [&](unsigned word) {
    return "0x" + Hex(static_cast<std::int32_t>(word & (~known & 0xFFFFU)));
  };
  all.push_back({before.empty() ? name : name + ", other bits", hex(saved), hex(now)});
  return all;
}

}  // namespace

std::vector<Difference> DifferenceOfRegister(const Setup& saved, const Setup& now,
                                             std::size_t index) {
  const std::uint16_t before = saved.registers.at(index);
  const std::uint16_t after = now.registers.at(index);
  if (before == after) return {};
  const std::string name = kRegisterNames.at(index);
  const std::int16_t row = RowOf(index);
  if (!DescribeRegister(row, before).empty()) return FieldDifferences(name, row, before, after);
  return {{name, WordText(saved, index), WordText(now, index)}};
}

std::vector<Difference> DifferenceOfBand(const Setup& saved, const Setup& now, int option,
                                         int band) {
  std::vector<Difference> all;
  for (std::size_t field = 0; field < kBandFields.size(); ++field) {
    if (saved.Band(option, band).at(field) == now.Band(option, band).at(field)) continue;
    all.push_back({BandName(option, band) + ", " + kBandFieldNames.at(field),
                   BandText(saved, option, band, field), BandText(now, option, band, field)});
  }
  return all;
}

std::vector<Difference> DifferenceOf(const Setup& saved, const Setup& now) {
  std::vector<Difference> all;
  const auto add = [&all](const std::vector<Difference>& more) {
    all.insert(all.end(), more.begin(), more.end());
  };
  for (std::size_t index = 0; index < kRegisters; ++index) {
    add(DifferenceOfRegister(saved, now, index));
  }
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      add(DifferenceOfBand(saved, now, option, band));
    }
  }
  return all;
}

}  // namespace kestrel::setup
