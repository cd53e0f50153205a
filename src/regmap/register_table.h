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

// The register table, one column an array, for reading; no column but RegAddr has a unit. Filled
// once by BuildRegisterTable; afterwards captures switch the sign of the three buffer registers,
// and listing all registers may shorten or pad names.
extern const RegisterColumn<std::string>& RegName;
// Byte address of the low byte; the high byte is at + 1.
extern const RegisterColumn<std::int32_t>& RegAddr;
extern const RegisterColumn<std::uint8_t>& RegGroup;  // 1, 2 or 4; displayed only
extern const RegisterColumn<std::int16_t>& RegBits;   // significant bits of a read
extern const RegisterColumn<bool>& RegSigned;         // two's complement of width RegBits
extern const RegisterColumn<bool>& RegReadable;
extern const RegisterColumn<bool>& RegWritable;
extern const RegisterColumn<float>& RegScale;  // scaled value = value x RegScale + RegOffset
extern const RegisterColumn<float>& RegOffset;
extern const RegisterColumn<bool>& RegReserved;  // listed as "reserved", not in the register log
// Keep bit 15 or 14 of a read apart; relics, no row does.
extern const RegisterColumn<bool>& RegKeepBit15;
extern const RegisterColumn<bool>& RegKeepBit14;
extern const std::int16_t& RegCount;  // highest filled row

// Sets the row variables and RegCount, then fills the rows in order.
void BuildRegisterTable();

void SetSigned(std::int16_t row, bool isSigned);
void SetName(std::int16_t row, const std::string& name);

// Back to the state before BuildRegisterTable.
void ResetRegisterTable();

}  // namespace kestrel
