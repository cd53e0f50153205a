// Rounding and ranges of the integer conversions.
// SPDX-License-Identifier: MIT
#include "numeric/conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNotANumber = std::nan("");

template <typename Function>
std::string ErrorOf(Function function) {
  try {
    static_cast<void>(function());
  } catch (const RuntimeError& error) {
    return error.what();
  }
  return "no error";
}

TEST(Conversions, TiesGoToTheEvenNeighbour) {
  struct Row {
    double value;
    std::int32_t expected;
  };
  const Row rows[] = {{0.5, 0},   {1.5, 2},   {2.5, 2},   {3.5, 4},    {254.5, 254}, {-0.5, 0},
                      {-1.5, -2}, {-2.5, -2}, {-3.5, -4}, {2.4999, 2}, {2.5001, 3},  {-2.5001, -3}};
  for (const Row& row : rows) {
    EXPECT_EQ(ToInteger(row.value), row.expected) << row.value;
    EXPECT_EQ(ToLong(row.value), row.expected) << row.value;
    if (row.expected < 0) continue;
    EXPECT_EQ(ToByte(row.value), row.expected) << row.value;
  }
}

TEST(Conversions, RangeIsCheckedAfterRounding) {
  EXPECT_EQ(ToByte(-0.5), 0);
  EXPECT_EQ(ToByte(255.49), 255);
  EXPECT_EQ(ToInteger(32767.49), 32767);
  EXPECT_EQ(ToInteger(-32768.5), -32768);
  EXPECT_EQ(ToLong(2147483647.49), 2147483647);
  EXPECT_EQ(ToLong(-2147483648.5), std::numeric_limits<std::int32_t>::min());
}

TEST(Conversions, WhatDoesNotFitIsAnOverflow) {
  for (const double value :
       {255.5, 256.0, -0.51, -1.0, 1e300, kInfinity, -kInfinity, kNotANumber}) {
    EXPECT_EQ(ErrorOf([&] { return ToByte(value); }), "Overflow") << value;
  }
  for (const double value : {32767.5, 32768.0, -32768.51, 65536.0, kInfinity, kNotANumber}) {
    EXPECT_EQ(ErrorOf([&] { return ToInteger(value); }), "Overflow") << value;
  }
  for (const double value : {2147483647.5, 2147483648.0, -2147483649.0, 1e10, kNotANumber}) {
    EXPECT_EQ(ErrorOf([&] { return ToLong(value); }), "Overflow") << value;
  }
}

TEST(Conversions, ProductsStayWithin16Bits) {
  EXPECT_EQ(MultiplyInteger(181, 181), 32761);
  EXPECT_EQ(MultiplyInteger(-128, 256), -32768);
  EXPECT_EQ(MultiplyInteger(0, -32768), 0);
  EXPECT_EQ(ErrorOf([] { return MultiplyInteger(128, 256); }), "Overflow");
  EXPECT_EQ(ErrorOf([] { return MultiplyInteger(-32768, -32768); }), "Overflow");
}

TEST(Conversions, NarrowingWrapsInto16Bits) {
  struct Row {
    std::int32_t value;
    std::int16_t expected;
  };
  const Row rows[] = {{0, 0},     {32767, 32767}, {32768, -32768}, {65535, -1},
                      {65536, 0}, {-1, -1},       {-32769, 32767}, {0x12348001, -32767}};
  for (const Row& row : rows) EXPECT_EQ(NarrowToInteger(row.value), row.expected) << row.value;
}

}  // namespace
}  // namespace kestrel
