// The bits of a field as text, and the text of its code.
// SPDX-License-Identifier: MIT
#include "device/field.h"

#include <bit>

namespace kestrel {
namespace {

std::string BitRange(const Field& field) {
  const auto highest = static_cast<int>(std::bit_width(static_cast<std::uint32_t>(field.mask))) - 1;
  const std::string lowest = std::to_string(field.lowestBit);
  return highest == field.lowestBit ? lowest : std::to_string(highest) + ":" + lowest;
}

}  // namespace

cBitFieldProp DescribeField(const Field& field, std::int32_t word, const std::string& title,
                            SettingTexts settings) {
  cBitFieldProp described;
  described.BFRange(BitRange(field));
  described.BFTitle(title);
  described.BFValue(field.Take(word));
  const auto code = static_cast<std::size_t>(described.BFValue());
  if (code < settings.size()) described.SettingDecription(settings[code]);
  return described;
}

}  // namespace kestrel
