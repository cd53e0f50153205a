// The list of all registers, in the order of the table's rows.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// Every register the program knows, in the order of the register table's rows.
// clang-format off
#define KESTREL_REGISTER_NAMES(X) \
  X(ENDURANCE) \
  X(X_NULL) \
  X(Y_NULL) \
  X(Z_NULL) \
  X(REC_FLSH_CNT) \
  X(SUPPLY_OUT) \
  X(TEMP_OUT) \
  X(FFT_AVG) \
  X(BUF_PNTR) \
  X(REC_PNTR) \
  X(X_BUF) \
  X(Y_BUF) \
  X(Z_BUF) \
  X(REC_CNT) \
  X(REC_CTRL) \
  X(REC_PRD) \
  X(ALM_F_LOW) \
  X(ALM_F_HIGH) \
  X(ALM_X_MAG1) \
  X(ALM_Y_MAG1) \
  X(ALM_Z_MAG1) \
  X(ALM_X_MAG2) \
  X(ALM_Y_MAG2) \
  X(ALM_Z_MAG2) \
  X(ALM_PNTR) \
  X(ALM_S_MAG) \
  X(ALM_CTRL) \
  X(DIO_CTRL) \
  X(GPIO_CTRL) \
  X(STATUS) \
  X(COMMAND) \
  X(ALM_X_STAT) \
  X(ALM_Y_STAT) \
  X(ALM_Z_STAT) \
  X(ALM_X_PEAK) \
  X(ALM_Y_PEAK) \
  X(ALM_Z_PEAK) \
  X(TIME_STMP_L) \
  X(TIME_STMP_H) \
  X(KEYCODE) \
  X(REV) \
  X(DAY) \
  X(MONTH) \
  X(YEAR) \
  X(PROD_ID) \
  X(SCRATCH_A) \
  X(SCRATCH_B) \
  X(SIGNTRL) \
  X(SIGNTRM) \
  X(SIGNTRU) \
  X(CHKSUML) \
  X(CHKSUMM) \
  X(CHKSUMU) \
  X(ST_CTRL) \
  X(ALM_X_FREQ) \
  X(ALM_Y_FREQ) \
  X(ALM_Z_FREQ) \
  X(REC_INFO)
// clang-format on

namespace kestrel::row {

// Row of each register in the register table, named after the register. -1 until
// BuildRegisterTable has run, which sets all of them.
// NOLINTNEXTLINE(bugprone-macro-parentheses): a name cannot be declared in them
#define KESTREL_DECLARE_ROW(name) extern const std::int16_t& name;
KESTREL_REGISTER_NAMES(KESTREL_DECLARE_ROW)
#undef KESTREL_DECLARE_ROW

}  // namespace kestrel::row
