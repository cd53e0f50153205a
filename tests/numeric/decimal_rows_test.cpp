// Number texts against rows worked out with decimal arithmetic.
// SPDX-License-Identifier: MIT
// Number texts against rows worked out by make_decimal_rows.py with decimal arithmetic.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "numeric/number_format.h"

namespace kestrel {
namespace {

double Number(const std::string& hexadecimal) {
  return std::strtod(hexadecimal.c_str(), nullptr);
}

std::string TextOf(const std::string& kind, double value, int decimals) {
  if (kind == "fixed") return FixedNumber(value, decimals);
  return kind == "double" ? GeneralNumber(value) : GeneralNumber(static_cast<float>(value));
}

TEST(DecimalRows, EveryTextIsAsDecimalArithmeticHasIt) {
  std::ifstream file(KESTREL_DECIMAL_ROWS);
  ASSERT_TRUE(file) << KESTREL_DECIMAL_ROWS;
  std::map<std::string, int> checked;
  for (std::string line; std::getline(file, line);) {
    std::istringstream row(line);
    std::string kind;
    std::string number;
    std::string expected;
    int decimals = 0;
    row >> kind >> number;
    if (kind == "fixed") row >> decimals;
    row >> expected;
    ASSERT_TRUE(row) << line;
    EXPECT_EQ(TextOf(kind, Number(number), decimals), expected) << line;
    ++checked[kind];
  }
  EXPECT_EQ(checked,
            (std::map<std::string, int>{{"double", 212}, {"fixed", 212}, {"single", 212}}));
}

}  // namespace
}  // namespace kestrel
