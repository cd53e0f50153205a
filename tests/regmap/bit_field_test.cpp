// The four values of a bit field's description.
// SPDX-License-Identifier: MIT
#include "regmap/bit_field.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(BitField, StartsEmpty) {
  const cBitFieldProp field;
  EXPECT_EQ(field.BFRange(), "");
  EXPECT_EQ(field.BFValue(), 0);
  EXPECT_EQ(field.BFTitle(), "");
  EXPECT_EQ(field.SettingDecription(), "");
}

TEST(BitField, KeepsItsFourValuesApart) {
  cBitFieldProp field;
  field.BFRange("[5:4]");
  field.BFValue(-32768);
  field.BFTitle("Measurement range");
  field.SettingDecription("0 to 20 g");
  EXPECT_EQ(field.BFRange(), "[5:4]");
  EXPECT_EQ(field.BFValue(), -32768);
  EXPECT_EQ(field.BFTitle(), "Measurement range");
  EXPECT_EQ(field.SettingDecription(), "0 to 20 g");
}

TEST(BitField, CopiesAreIndependent) {
  cBitFieldProp field;
  field.BFValue(3);
  cBitFieldProp copy = field;
  copy.BFValue(4);
  EXPECT_EQ(field.BFValue(), 3);
  EXPECT_EQ(copy.BFValue(), 4);
}

}  // namespace
}  // namespace kestrel
