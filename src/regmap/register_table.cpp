// The register table's contents, filled row by row.
// SPDX-License-Identifier: MIT
#include "regmap/register_table.h"

#include <array>
#include <bit>
#include <cstddef>

#include "numeric/runtime_error.h"

namespace kestrel {

namespace {

struct Table {
  RegisterColumn<std::string> name;
  RegisterColumn<std::int32_t> addr;
  RegisterColumn<std::uint8_t> group;
  RegisterColumn<std::int16_t> bits;
  RegisterColumn<bool> isSigned;
  RegisterColumn<bool> readable;
  RegisterColumn<bool> writable;
  RegisterColumn<float> scale;
  RegisterColumn<float> offset;
  RegisterColumn<bool> reserved;
  RegisterColumn<bool> keepBit15;
  RegisterColumn<bool> keepBit14;
  std::int16_t count = 0;
};

Table table;

}  // namespace

namespace row {
namespace {

#define KESTREL_ROW_NUMBER(name) std::int16_t number##name = -1;
KESTREL_REGISTER_NAMES(KESTREL_ROW_NUMBER)
#undef KESTREL_ROW_NUMBER

}  // namespace

#define KESTREL_DEFINE_ROW(name) const std::int16_t& name = number##name;
KESTREL_REGISTER_NAMES(KESTREL_DEFINE_ROW)
#undef KESTREL_DEFINE_ROW
}  // namespace row

const RegisterColumn<std::string>& RegName = table.name;
const RegisterColumn<std::int32_t>& RegAddr = table.addr;
const RegisterColumn<std::uint8_t>& RegGroup = table.group;
const RegisterColumn<std::int16_t>& RegBits = table.bits;
const RegisterColumn<bool>& RegSigned = table.isSigned;
const RegisterColumn<bool>& RegReadable = table.readable;
const RegisterColumn<bool>& RegWritable = table.writable;
const RegisterColumn<float>& RegScale = table.scale;
const RegisterColumn<float>& RegOffset = table.offset;
const RegisterColumn<bool>& RegReserved = table.reserved;
const RegisterColumn<bool>& RegKeepBit15 = table.keepBit15;
const RegisterColumn<bool>& RegKeepBit14 = table.keepBit14;
const std::int16_t& RegCount = table.count;

namespace {

enum Sign { Unsigned, Signed };
enum Access { NoAccess, ReadOnly, WriteOnly, ReadWrite };
enum Listing { Listed, Reserved };

struct Entry {
  const char* name;
  std::int32_t address;
  std::int16_t bits;
  Sign sign;
  Access access;
  float scale;
  float offset;
  std::uint8_t group;
  Listing listing;
};

// Exact single-precision factors: g per LSB of the null and buffer registers, V per LSB.
constexpr float kNullScale = std::bit_cast<float>(0x3B9C4001U);
constexpr float kSupplyScale = std::bit_cast<float>(0x3A9FFFFFU);

// The odd entries are the sensor's own: ALM_Y_MAG2 has 15 bits, REC_PNTR 4, REC_INFO 26 (nothing is
// masked), and REV to YEAR and SIGNTRL to CHKSUMU sit at consecutive byte addresses.
// clang-format off
constexpr Entry kEntries[] = {
//   name            addr  bits sign      access      scale         offset   group listing
    {"ENDURANCE",    0x00, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 2, Listed},
    {"X_NULL",       0x02, 16, Signed,  ReadWrite, kNullScale,      0.0F, 2, Listed},
    {"Y_NULL",       0x04, 16, Signed,  ReadWrite, kNullScale,      0.0F, 2, Listed},
    {"Z_NULL",       0x06, 16, Signed,  ReadWrite, kNullScale,      0.0F, 2, Listed},
    {"REC_FLSH_CNT", 0x08, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 2, Listed},
    {"SUPPLY_OUT",   0x0A, 16, Signed,  ReadOnly,  kSupplyScale,    0.0F, 2, Listed},
    {"TEMP_OUT",     0x0C, 16, Signed,  ReadOnly,  -0.47F,        625.0F, 2, Listed},
    {"FFT_AVG",      0x0E, 16, Signed,  ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"BUF_PNTR",     0x10, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"REC_PNTR",     0x12,  4, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"X_BUF",        0x14, 16, Unsigned, ReadWrite, kNullScale,      0.0F, 2, Listed},
    {"Y_BUF",        0x16, 16, Unsigned, ReadWrite, kNullScale,      0.0F, 2, Listed},
    {"Z_BUF",        0x18, 16, Unsigned, ReadWrite, kNullScale,      0.0F, 2, Listed},
    {"REC_CNT",      0x1A, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"REC_CTRL",     0x1C, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"REC_PRD",      0x1E, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_F_LOW",    0x20, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_F_HIGH",   0x22, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_X_MAG1",   0x24, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_Y_MAG1",   0x26, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_Z_MAG1",   0x28, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_X_MAG2",   0x2A, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_Y_MAG2",   0x2C, 15, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_Z_MAG2",   0x2E, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_PNTR",     0x30, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_S_MAG",    0x32, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"ALM_CTRL",     0x34, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"DIO_CTRL",     0x36,  8, Unsigned, ReadWrite, 1.0F,            0.0F, 1, Listed},
    {"GPIO_CTRL",    0x38, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"STATUS",       0x3C, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 2, Listed},
    {"COMMAND",      0x3E, 16, Unsigned, WriteOnly, 1.0F,            0.0F, 4, Listed},
    {"ALM_X_STAT",   0x40, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"ALM_Y_STAT",   0x42, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"ALM_Z_STAT",   0x44, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"ALM_X_PEAK",   0x46, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"ALM_Y_PEAK",   0x48, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"ALM_Z_PEAK",   0x4A, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"TIME_STMP_L",  0x4C, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"TIME_STMP_H",  0x4E, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"KEYCODE",      0x50, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"REV",          0x52, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"DAY",          0x53, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"MONTH",        0x54, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"YEAR",         0x55, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"PROD_ID",      0x56, 16, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
    {"SCRATCH_A",    0x58, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Reserved},
    {"SCRATCH_B",    0x5A, 16, Unsigned, NoAccess,  1.0F,            0.0F, 4, Reserved},
    {"SIGNTRL",      0x60, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Reserved},
    {"SIGNTRM",      0x61, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Reserved},
    {"SIGNTRU",      0x62, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Reserved},
    {"CHKSUML",      0x63, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Reserved},
    {"CHKSUMM",      0x64, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Reserved},
    {"CHKSUMU",      0x65, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Reserved},
    {"ST_CTRL",      0x66, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"ALM_X_FREQ",   0x70, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"ALM_Y_FREQ",   0x72, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"ALM_Z_FREQ",   0x74, 16, Unsigned, ReadWrite, 1.0F,            0.0F, 4, Listed},
    {"REC_INFO",     0x76, 26, Unsigned, ReadOnly,  1.0F,            0.0F, 4, Listed},
};
// clang-format on

constexpr std::size_t kFilledRows = std::size(kEntries);
static_assert(kFilledRows == 58);
static_assert(kFilledRows <= kRegisterRows);

constexpr bool AddressesFit() {
  for (const Entry& entry : kEntries) {
    if (entry.address < 0 || entry.address > 0x7E) return false;
  }
  return true;
}
static_assert(AddressesFit(), "an address has 7 bits, and the high byte follows the low byte");

#define KESTREL_ROW_VARIABLE(name) &row::number##name,
constexpr std::array kRowVariables{KESTREL_REGISTER_NAMES(KESTREL_ROW_VARIABLE)};
#undef KESTREL_ROW_VARIABLE

void SetRowVariables() {
  for (std::size_t i = 0; i < kRowVariables.size(); ++i) {
    *kRowVariables[i] = static_cast<std::int16_t>(i);
  }
}

void FillRow(std::size_t index, const Entry& entry) {
  const auto at = static_cast<std::int16_t>(index);
  table.name[at] = entry.name;
  table.addr[at] = entry.address;
  table.group[at] = entry.group;
  table.bits[at] = entry.bits;
  table.isSigned[at] = entry.sign == Signed;
  table.readable[at] = entry.access == ReadOnly || entry.access == ReadWrite;
  table.writable[at] = entry.access == WriteOnly || entry.access == ReadWrite;
  table.scale[at] = entry.scale;
  table.offset[at] = entry.offset;
  table.reserved[at] = entry.listing == Reserved;
  table.keepBit15[at] = false;
  table.keepBit14[at] = false;
}

}  // namespace

void BuildRegisterTable() {
  SetRowVariables();
  table.count = static_cast<std::int16_t>(kFilledRows - 1);
  for (std::size_t index = 0; index < kFilledRows; ++index) FillRow(index, kEntries[index]);
}

void SetSigned(std::int16_t row, bool isSigned) {
  table.isSigned[row] = isSigned;
}

void SetName(std::int16_t row, const std::string& name) {
  table.name[row] = name;
}

void ResetRegisterTable() {
  for (std::int16_t* row : kRowVariables) *row = -1;
  table = {};
}

}  // namespace kestrel
