// How the list of all registers is read and written down.
// SPDX-License-Identifier: MIT
#include "device/register_list.h"

#include <algorithm>

#include "app/program_state.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr const char* kHeading =
    "Name\t\tAddr\tHex\r\n--------------------\t---------\t---------\r\n";
constexpr std::size_t kWordDigits = 4;
constexpr std::size_t kShortestName = 5;
constexpr std::size_t kLongestName = 11;

std::string FourDigits(std::int32_t value) {
  const std::string digits = std::string(kWordDigits, '0') + Hex(value);
  return digits.substr(digits.size() - kWordDigits);
}

std::string FittedName(const std::string& name) {
  if (name.size() < kShortestName) return name + "______";
  return name.substr(0, kLongestName);
}

std::string WithoutTrailingBlanks(const std::string& text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool Changed(const RegisterListing& before, const RegisterListing::Line& now) {
  return std::any_of(before.lines.begin(), before.lines.end(), [&](const auto& line) {
    return line.row == now.row && line.word != now.word;
  });
}

std::string LineText(const RegisterListing::Line& line) {
  return WithoutTrailingBlanks(RegName[line.row]) + "     \t" + Hex(RegAddr[line.row]) + "\t" +
         line.word + "\r\n";
}

}  // namespace

std::string RegisterEntry(std::int16_t row) {
  return RegReserved[row] ? "reserved" : RegName[row];
}

std::optional<RegisterListing> ReadAllRegisters(RegisterAccess& registers,
                                                const RegisterListing& before) {
  RegisterListing listing;
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (RegReserved[row]) continue;
    const auto reading = registers.Read(row);
    // Without an interface every register reads as 0; a lost sensor seems to answer anything.
    if (!reading && RegReadable[row] && InterfaceType != kNoInterface) return std::nullopt;
    listing.lines.push_back({row, FourDigits(reading ? reading->value : 0), false});
  }
  listing.text = kHeading;
  for (RegisterListing::Line& line : listing.lines) {
    SetName(line.row, FittedName(RegName[line.row]));
    line.changed = Changed(before, line);
    listing.text += LineText(line);
  }
  return listing;
}

std::string ListingNote(const RegisterListing& listing, const std::string& time) {
  constexpr int kMostNames = 6;
  std::string names;
  int changed = 0;
  for (const RegisterListing::Line& line : listing.lines) {
    if (!line.changed) continue;
    if (++changed <= kMostNames) names += (changed > 1 ? ", " : "") + RegName[line.row];
  }
  std::string note = std::to_string(listing.lines.size()) + " registers, read at " + time + ".";
  if (changed > kMostNames) names += " and " + std::to_string(changed - kMostNames) + " more";
  if (changed > 0) note += " Changed: " + names + ".";
  return note;
}

}  // namespace kestrel
