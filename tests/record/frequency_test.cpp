// Sample frequencies and bin widths of the options.
// SPDX-License-Identifier: MIT
#include "record/frequency.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(Frequency, EachOptionSamplesEightTimesSlower) {
  EXPECT_DOUBLE_EQ(SampleFrequency(0), 100189.9);
  EXPECT_DOUBLE_EQ(SampleFrequency(1), 12523.7375);
  EXPECT_DOUBLE_EQ(SampleFrequency(2), 1565.4671875);
  EXPECT_DOUBLE_EQ(SampleFrequency(3), 195.6833984375);
}

TEST(Frequency, ABinIsA512thOfTheSampleFrequency) {
  EXPECT_DOUBLE_EQ(BinWidth(0), 195.6833984375);
  EXPECT_DOUBLE_EQ(BinWidth(1), 24.4604248046875);
  EXPECT_DOUBLE_EQ(BinWidth(2), 3.0575531005859375);
  EXPECT_DOUBLE_EQ(BinWidth(3), 0.3821941375732422);
}

}  // namespace
}  // namespace kestrel
