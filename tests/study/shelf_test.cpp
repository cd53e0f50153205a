// The shelf of records: order, ids, and what is dropped.
// SPDX-License-Identifier: MIT
#include "study/shelf.h"

#include <gtest/gtest.h>

#include "study/sample_records.h"

namespace kestrel::study {
namespace {

RecordPointer Taken(int second) {
  return RecordOf({.second = second});
}

TEST(Shelf, HoldsTheNewestFirst) {
  Shelf shelf(3);
  EXPECT_EQ(shelf.Add(Taken(1)), 1);
  EXPECT_EQ(shelf.Add(Taken(2)), 2);
  EXPECT_EQ(shelf.Entries().front().id, 2);
  EXPECT_EQ(shelf.Find(1)->conditions.recordCount, 1);
  EXPECT_EQ(shelf.Find(3), nullptr);
  EXPECT_EQ(shelf.Dropped(), 0);
}

TEST(Shelf, DropsTheOldestAndNeverGivesAnIdAgain) {
  Shelf shelf(2);
  for (int i = 1; i <= 5; ++i) EXPECT_EQ(shelf.Add(Taken(i)), i);
  EXPECT_EQ(shelf.Entries().size(), 2U);
  EXPECT_EQ(shelf.Dropped(), 3);
  EXPECT_EQ(shelf.Find(3), nullptr);
  EXPECT_EQ(shelf.Find(4)->conditions.recordCount, 4);
}

TEST(Shelf, ARecordIsReplacedUnderItsIdWhateverCameAfterIt) {
  Shelf shelf(2);
  const RecordPointer first = Taken(1);
  shelf.Replace(first, Taken(0));
  EXPECT_TRUE(shelf.Entries().empty());
  shelf.Add(first);
  shelf.Add(Taken(3));
  shelf.Replace(first, Taken(2));
  EXPECT_EQ(shelf.Entries().size(), 2U);
  EXPECT_EQ(shelf.Find(1)->conditions.recordCount, 2);
  EXPECT_EQ(shelf.Find(2)->conditions.recordCount, 3);
}

}  // namespace
}  // namespace kestrel::study
