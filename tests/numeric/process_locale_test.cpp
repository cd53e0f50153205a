// Number texts are the same whatever locale a toolkit gives the process.
// SPDX-License-Identifier: MIT
// Number texts are the same whatever locale a toolkit gives the process.

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>

#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "support/comma_locale.h"

namespace kestrel {
namespace {

class ProcessLocale : public testing::Test {
 protected:
  void SetUp() override {
    if (!locale_.installed()) GTEST_SKIP() << "the system builds no locales";
    ASSERT_NE(std::setlocale(LC_NUMERIC, CommaLocale::kName), nullptr);
    char text[8];
    std::snprintf(text, sizeof text, "%.1f", 1.5);
    ASSERT_STREQ(text, "1,5");
  }
  void TearDown() override { std::setlocale(LC_NUMERIC, "C"); }

 private:
  CommaLocale locale_;
};

TEST_F(ProcessLocale, NumbersAreWrittenWithAPoint) {
  EXPECT_EQ(GeneralNumber(624.53), "624.53");
  EXPECT_EQ(GeneralNumber(0.5F), "0.5");
  EXPECT_EQ(GeneralNumber(1.5e-7), "1.5E-07");
  EXPECT_EQ(FixedNumber(1.005, 2), "1.01");
  EXPECT_EQ(OneToFourDecimals(3.3), "3.3");
  EXPECT_EQ(GroupedWholeNumber(1957), "1,957");
}

TEST_F(ProcessLocale, NumbersAreReadWithAPoint) {
  EXPECT_EQ(LeadingNumber("1.5 g"), 1.5);
  EXPECT_EQ(LeadingNumber("1,5 g"), 1);
  EXPECT_EQ(WholeTextNumber("1.5"), 1.5);
}

}  // namespace
}  // namespace kestrel
