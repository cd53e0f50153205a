// Tests of the records of a series that were had.
// SPDX-License-Identifier: MIT
#include "monitor/seen_records.h"

#include <gtest/gtest.h>

namespace kestrel::monitor {
namespace {

TEST(SeenRecords, AreNewOnce) {
  SeenRecords seen;
  EXPECT_TRUE(seen.Add("a", false));
  EXPECT_TRUE(seen.Add("b", true));
  EXPECT_FALSE(seen.Add("a", false));
  EXPECT_FALSE(seen.Add("a", true));
  EXPECT_FALSE(seen.Add("b", false));
  EXPECT_FALSE(seen.Add("b", true));
}

void AddMany(SeenRecords& seen, int count, bool inFlash, const std::string& name) {
  for (int i = 0; i < count; ++i) EXPECT_TRUE(seen.Add(name + std::to_string(i), inFlash)) << i;
}

TEST(SeenRecords, OfTheFlashAreKnownHoweverManyCameSince) {
  SeenRecords seen;
  AddMany(seen, 16, true, "stored");
  AddMany(seen, 1000, false, "fetched");
  EXPECT_FALSE(seen.Add("stored0", true));
  EXPECT_FALSE(seen.Add("fetched936", false)) << "the last 64";
  EXPECT_TRUE(seen.Add("fetched935", false));
  AddMany(seen, 16, true, "later");
  EXPECT_TRUE(seen.Add("stored15", true)) << "a flash holds 16";
}

TEST(SeenRecords, ThatWereFetchedBeforeTheyWereFoundInTheFlashStayKnown) {
  SeenRecords seen;
  EXPECT_TRUE(seen.Add("a", false));
  EXPECT_FALSE(seen.Add("a", true));
  AddMany(seen, 100, false, "fetched");
  EXPECT_FALSE(seen.Add("a", true));
}

TEST(SeenRecords, AreKnownAfterARestart) {
  SeenRecords before;
  AddMany(before, 3, true, "stored");
  AddMany(before, 3, false, "fetched");
  SeenRecords seen;
  seen.Restore(before.Text());
  EXPECT_EQ(seen.Text(), "*stored0 *stored1 *stored2 fetched0 fetched1 fetched2 ");
  AddMany(seen, 100, false, "other");
  EXPECT_FALSE(seen.Add("stored1", true));
  EXPECT_TRUE(seen.Add("fetched1", true));
  seen.Restore("");
  EXPECT_TRUE(seen.Add("stored1", true));
}

}  // namespace
}  // namespace kestrel::monitor
