// What a word of the wire becomes by its register's row.
// SPDX-License-Identifier: MIT
#include "regmap/reading.h"

#include <gtest/gtest.h>

#include "numeric/runtime_error.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

class Readings : public testing::Test {
 protected:
  Readings() { BuildRegisterTable(); }
  ~Readings() override { ResetRegisterTable(); }
};

TEST_F(Readings, KeepTheRawWordBesideTheValue) {
  EXPECT_EQ(DecodeReading(row::X_NULL, 0xFFFE), (Reading{0xFFFE, -2, -2 * RegScale[row::X_NULL]}));
  EXPECT_EQ(DecodeReading(row::REC_PNTR, 0x00F3).value, 3);
  EXPECT_EQ(DecodeReading(row::REC_PNTR, 0x00F3).raw, 0xF3);
}

TEST_F(Readings, AreScaledInSinglePrecision) {
  EXPECT_EQ(DecodeReading(row::TEMP_OUT, 1).scaled, 624.53F);
}

TEST_F(Readings, OfARowOutsideTheTableThereAreNone) {
  EXPECT_THROW(static_cast<void>(DecodeReading(86, 0)), RuntimeError);
}

}  // namespace
}  // namespace kestrel
