// The table that says of each register where it is and how it decodes.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "numeric/runtime_error.h"
#include "regmap/register_rows.h"

namespace kestrel {

inline constexpr std::size_t kRegisterRows = 86;  // rows 0..85; those past RegCount stay empty

// One column of the register table. A row outside 0..85 throws RuntimeError "Subscript out of
// range".
template <typename Value>
class RegisterColumn {
 public:
  Value& operator[](std::int16_t row) { return values_[Checked(row)]; }
  const Value& operator[](std::int16_t row) const { return values_[Checked(row)]; }

 private:
  static std::size_t Checked(std::int16_t row) {
    if (row < 0 || static_cast<std::size_t>(row) >= kRegisterRows) {
      throw RuntimeError(kSubscriptOutOfRange);
    }
    return static_cast<std::size_t>(row);
  }

  std::array<Value, kRegisterRows> values_{};
};

// The register table, one column an array. Filled once by BuildRegisterTable; afterwards the
// capture cycle switches RegSigned of the three buffer registers, and listing all registers may
// shorten or pad RegName.
extern RegisterColumn<std::string> RegName;
extern RegisterColumn<std::int32_t> RegAddr;   // byte address of the low byte; high byte at + 1
extern RegisterColumn<std::uint8_t> RegGroup;  // 1, 2 or 4; displayed only
extern RegisterColumn<std::int16_t> RegBits;   // significant bits of a read
extern RegisterColumn<bool> RegSigned;         // two's complement of width RegBits
extern RegisterColumn<bool> RegReadable;
extern RegisterColumn<bool> RegWritable;
extern RegisterColumn<float> RegScale;  // scaled value = value x RegScale + RegOffset
extern RegisterColumn<float> RegOffset;
extern RegisterColumn<bool> RegReserved;   // listed as "reserved", left out of the register log
extern RegisterColumn<bool> RegKeepBit15;  // keep bit 15 of a read apart; a relic, no row does
extern RegisterColumn<bool> RegKeepBit14;  // keep bit 14 of a read apart; a relic, no row does
extern std::int16_t RegCount;              // highest filled row

// Sets the row variables and RegCount, then fills the rows in order.
void BuildRegisterTable();

// Back to the state before BuildRegisterTable.
void ResetRegisterTable();

}  // namespace kestrel
