// The arrays of 512 with their index checked.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "record/capture_data.h"

namespace kestrel {
namespace {

TEST(RecordArray, TakesTheIndexes0To511) {
  RecordArray record;
  record(0) = 1.5;
  record(511) = -2.5;
  EXPECT_EQ(record(0), 1.5);
  EXPECT_EQ(record(1), 0);
  EXPECT_EQ(record(511), -2.5);
}

TEST(RecordArray, AnyOtherIndexIsOutOfRange) {
  RecordArray record;
  const RecordArray& constant = record;
  for (const int index : {-1, 512, 100000}) {
    SCOPED_TRACE(index);
    EXPECT_THROW(record(index) = 1, RuntimeError);
    try {
      static_cast<void>(constant(index));
      ADD_FAILURE();
    } catch (const RuntimeError& error) {
      EXPECT_STREQ(error.what(), "Subscript out of range");
    }
  }
}

}  // namespace
}  // namespace kestrel
