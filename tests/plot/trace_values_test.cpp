// The words for a point of a record.
// SPDX-License-Identifier: MIT
#include "plot/trace_values.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(TraceValues, NameTheBinItsFrequencyAndTheTracesThatAreDrawn) {
  EXPECT_EQ(TraceValues({.index = 10,
                         .hertz = 1956.83,
                         .g = {0.41204, 0.00006, 12.5},
                         .shown = {true, true, true}}),
            "Bin 10, 1,957 Hz\nX  0.4120 g\nY  0.0001 g\nZ  12.5000 g");
  EXPECT_EQ(TraceValues({.index = 0, .g = {1, 2, 3}, .shown = {false, true, false}}),
            "Bin 0, 0 Hz\nY  2.0000 g");
}

TEST(TraceValues, OfATimeRecordHaveSignsAndNoFrequency) {
  EXPECT_EQ(TraceValues({.index = 511,
                         .hertz = 99994,
                         .isTime = true,
                         .g = {-1.25, 0, 0},
                         .shown = {true, false, false}}),
            "Sample 511\nX  -1.2500 g");
}

}  // namespace
}  // namespace kestrel
