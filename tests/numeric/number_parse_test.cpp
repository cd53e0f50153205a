// Which texts are numbers, and which number they are.
// SPDX-License-Identifier: MIT
#include "numeric/number_parse.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

namespace kestrel {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(LeadingNumber, EndsWhereTheNumberEnds) {
  struct Row {
    const char* text;
    double expected;
  };
  const Row rows[] = {{"12", 12},  {"12 mm", 12}, {"2.5e1 mm", 25}, {"  \t7", 7},  {"-3.5x", -3.5},
                      {"+4", 4},   {".5", 0.5},   {"-.5", -0.5},    {"5.", 5},     {"1.2.3", 1.2},
                      {"1,5", 1},  {"1e", 1},     {"1e+", 1},       {"1E3", 1000}, {"12e-1", 1.2},
                      {"0x1F", 0}, {"007", 7},    {"1 2", 1}};
  for (const Row& row : rows) EXPECT_EQ(LeadingNumber(row.text), row.expected) << row.text;
}

TEST(LeadingNumber, WithoutNumberItIsZero) {
  for (const char* text : {"", "   ", "abc", "-", "+", ".", "-.", "+-5", "--5", "e5", "inf", "nan",
                           "-inf", "infinity", "$12"}) {
    EXPECT_EQ(LeadingNumber(text), 0) << text;
  }
}

TEST(LeadingNumber, WhatNoDoubleHoldsIsInfiniteOrZero) {
  struct Row {
    std::string text;
    double expected;
  };
  const std::string zeros(400, '0');
  const Row rows[] = {{"1e999", kInfinity},
                      {"-1e999", -kInfinity},
                      {"1E-999", 0},
                      {"-1e-999", 0},
                      {"1e99999999999999999999", kInfinity},
                      {"1e-99999999999999999999", 0},
                      {"5e9223372036854775807", kInfinity},
                      {"0.5e-9223372036854775808", 0},
                      {"1" + zeros, kInfinity},
                      {"0." + zeros + "1", 0},
                      {"1" + zeros + "e-5", kInfinity},
                      {"0." + zeros + "1e5", 0},
                      {"1" + zeros + "e-400", 1}};
  for (const Row& row : rows) EXPECT_EQ(LeadingNumber(row.text), row.expected) << row.text;
}

TEST(WholeTextNumber, BlanksAroundAreAllowedAndNothingElse) {
  EXPECT_EQ(WholeTextNumber("888"), 888.0);
  EXPECT_EQ(WholeTextNumber(" -2.5e1\t\r\n"), -25.0);
  EXPECT_EQ(WholeTextNumber("+7"), 7.0);
  EXPECT_EQ(WholeTextNumber("1e999"), kInfinity);
  for (const char* text :
       {"", "  ", "12 mm", "1 2", "1,5", "1e", "abc", "0x10", "+-1", "nan", "-"}) {
    EXPECT_EQ(WholeTextNumber(text), std::nullopt) << text;
  }
}

TEST(HexadecimalNumber, OneToEightDigits) {
  struct Row {
    const char* text;
    std::uint32_t expected;
  };
  const Row rows[] = {{"0", 0},         {"1c", 0x1C},    {"BF08", 0xBF08},
                      {" aBc ", 0xABC}, {"00000001", 1}, {"FFFFFFFF", 0xFFFFFFFF}};
  for (const Row& row : rows) EXPECT_EQ(HexadecimalNumber(row.text), row.expected) << row.text;
}

TEST(HexadecimalNumber, AnyOtherTextIsNone) {
  for (const char* text :
       {"", " ", "G", "1G", "0x1F", "&H1F", "-1", "+1", "1 2", "100000000", "000000001", "1.0"}) {
    EXPECT_EQ(HexadecimalNumber(text), std::nullopt) << text;
  }
}

TEST(HexadecimalWord, OneToFourDigitsWithOrWithoutAPrefix) {
  EXPECT_EQ(HexadecimalWord("0"), 0);
  EXPECT_EQ(HexadecimalWord("fFfF"), 0xFFFF);
  EXPECT_EQ(HexadecimalWord(" 0x1F\t"), 0x1F);
  EXPECT_EQ(HexadecimalWord("0X00FF"), 0xFF);
  EXPECT_EQ(HexadecimalWord("&hBEEF"), 0xBEEF);
  EXPECT_EQ(HexadecimalWord("&H1"), 1);
}

TEST(HexadecimalWord, AnyOtherTextIsNone) {
  for (const char* text : {"", " ", "10000", "0x", "&H", "0x 1", "0x0x1", "&H12345", "-1", "+1",
                           "1 2", "G", "H1", "1.", "\xC2\xA0"}) {
    EXPECT_EQ(HexadecimalWord(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace kestrel
