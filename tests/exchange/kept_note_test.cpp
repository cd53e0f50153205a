// What the archive knows of a record goes into its file.
// SPDX-License-Identifier: MIT
#include "exchange/kept_note.h"

#include <gtest/gtest.h>

#include "support/random_records.h"

namespace kestrel::exchange {
namespace {

TEST(KeptNote, HoldsEveryRemark) {
  archive::KeptRecord kept;
  kept.record = RandomRecords(3).Next();
  kept.remarks = {"Pump", "DE", "X radial", 1480.5, "after alignment", {"a", "b"}};
  kept.program = "1.2.3";
  const NotedRecord noted = Noted(kept);
  EXPECT_EQ(noted.record, kept.record);
  EXPECT_EQ(noted.note, (RecordNote{.machine = "Pump",
                                    .point = "DE",
                                    .orientation = "X radial",
                                    .speedRpm = 1480.5,
                                    .note = "after alignment",
                                    .tags = {"a", "b"},
                                    .program = "1.2.3"}));
}

}  // namespace
}  // namespace kestrel::exchange
