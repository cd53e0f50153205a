// Every record that the main window reads is kept, and what stands in the way is said calmly.
// SPDX-License-Identifier: MIT
#include <fstream>

#include "ui/library/keeper_text.h"
#include "ui/library/library_bench.h"

namespace kestrel {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Keeping = LibraryBench;

TEST_F(Keeping, ACaptureIsKeptWithoutBeingAsked) {
  StartKeeping();
  Capture();
  ASSERT_TRUE(Kept());
  const auto all = All();
  ASSERT_THAT(all, SizeIs(1));
  const Record& there = core_.record.Get();
  EXPECT_EQ(all[0].record.time, there.time);
  for (const Axis axis : kAxes) {
    for (int i = 0; i < 256; ++i) {
      ASSERT_EQ(all[0].record.Of(axis).raw(i), there.Of(axis).raw(i)) << i;
    }
  }
  EXPECT_EQ(all[0].record.settings, there.settings);
  EXPECT_EQ(all[0].record.alarms, there.alarms) << "they come a moment after the points";
  EXPECT_TRUE(all[0].record.alarms.statusKnown);
  EXPECT_EQ(all[0].program, "0.1.0");
  EXPECT_EQ(all[0].bench, "bench 1");
}

TEST_F(Keeping, EachCaptureIsARecordOfItsOwn) {
  StartKeeping();
  for (int i = 0; i < 4; ++i) Capture();
  ASSERT_TRUE(Kept());
  EXPECT_THAT(All(), SizeIs(4));
}

TEST_F(Keeping, WithoutAPlaceNothingIsKeptAndTheEntryIsGrey) {
  Start();
  Capture();
  EXPECT_FALSE(Keeper().HasPlace());
  EXPECT_TRUE(Kept());
  EXPECT_FALSE(Find<QAction>("mnuKeepRecords").isEnabled());
  EXPECT_FALSE(Find<QAction>("mnuKeepRecords").isChecked());
  EXPECT_TRUE(Find<QLabel>("lblArchive").isHidden());
}

TEST_F(Keeping, TheMenuTurnsItOffAndThatIsRemembered) {
  StartKeeping();
  EXPECT_TRUE(Find<QAction>("mnuKeepRecords").isChecked());
  Trigger("mnuKeepRecords");
  Capture();
  ASSERT_TRUE(Kept());
  EXPECT_THAT(All(), IsEmpty());
  StartKeeping();
  EXPECT_FALSE(Find<QAction>("mnuKeepRecords").isChecked());
  Trigger("mnuKeepRecords");
  Capture();
  ASSERT_TRUE(Kept());
  EXPECT_THAT(All(), SizeIs(2)) << "the one at hand, and the next";
}

TEST_F(Keeping, SwitchedOnItKeepsTheRecordAtHandOnce) {
  StartKeeping();
  Capture();
  Trigger("mnuKeepRecords");
  Trigger("mnuKeepRecords");
  ASSERT_TRUE(Kept());
  EXPECT_THAT(All(), SizeIs(1));
}

TEST_F(Keeping, WhatAStoppedCaptureLeftBehindIsNotKept) {
  StartKeeping();
  Capture();
  Record left = core_.record.Get();
  left.time += std::chrono::seconds(1);
  left.origin.stopped = true;
  left.origin.countBefore = left.conditions.recordCount;
  core_.record.HandOver(left);
  ASSERT_TRUE(Kept());
  EXPECT_THAT(All(), SizeIs(1));
  left.time += std::chrono::seconds(1);
  --*left.origin.countBefore;
  core_.record.HandOver(left);
  ASSERT_TRUE(Kept());
  EXPECT_THAT(All(), SizeIs(2)) << "the sensor has counted it";
}

TEST_F(Keeping, WhereTheSensorSitsGoesIntoTheRecordsToComeAndIsRemembered) {
  StartKeeping();
  Capture();
  const archive::Remarks site{.machine = "Pump \"1\" '; drop table record;--",
                              .point = "Lager ü 🛠",
                              .orientation = "X radial",
                              .rpm = 1480.5};
  Keeper().SetSite(site);
  Capture();
  ASSERT_TRUE(Kept());
  auto all = All();
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_EQ(all[0].remarks, site);
  EXPECT_EQ(all[1].remarks, archive::Remarks{});
  StartKeeping();
  EXPECT_EQ(Keeper().Site(), site);
}

TEST_F(Keeping, APlaceThatIsNoArchiveIsSaidInALineAndTheRecordWaits) {
  const std::string foreign =
      folder_.Write("notes.txt", "no database, whatever its size\n").string();
  StartKeeping(foreign);
  Capture();
  ASSERT_TRUE(Kept()) << "beside the usual place";
  ASSERT_TRUE(Gets([this] { return Text("lblArchive").contains("wait"); }));
  EXPECT_TRUE(Find<QLabel>("lblArchive").isVisibleTo(&Window()));
  EXPECT_THAT(Text("lblArchive").toStdString(), HasSubstr("1 record waits to be brought"));
  EXPECT_THAT(Text("lblArchive").toStdString(), HasSubstr(foreign));
  EXPECT_THAT(messages_.Texts(), IsEmpty()) << "never in a box";
  EXPECT_TRUE(Window().close());
  EXPECT_THAT(messages_.questions, IsEmpty()) << "nothing is lost";
  EXPECT_EQ(folder_.Content("notes.txt"), "no database, whatever its size\n");
}

TEST_F(Keeping, WhatWaitedIsBroughtOverAtTheNextStart) {
  const std::filesystem::path away = folder_.path() / "away";
  std::ofstream(away) << "in the way";
  const std::string place = (away / "archive.db").string();
  StartKeeping(place);
  Capture();
  ASSERT_TRUE(Kept());
  ASSERT_TRUE(Gets([this] { return Keeper().State().waiting == 1; }));
  windows_.reset();
  std::filesystem::remove(away);
  StartKeeping(place);
  ASSERT_TRUE(Gets([this] { return Keeper().State().kept == 1; }));
  EXPECT_TRUE(Gets([this] { return Text("lblArchive").isEmpty(); }));
}

TEST_F(Keeping, BeforeRecordsWouldBeLostTheUserIsAsked) {
  folder_.Write("usual", "a file where the folder should be");
  StartKeeping(folder_.Write("notes.txt", "no database, whatever its size\n").string());
  Capture();
  messages_.answer = Unsaved::Cancel;
  EXPECT_FALSE(Window().close());
  ASSERT_THAT(messages_.questions, SizeIs(1));
  EXPECT_THAT(messages_.questions[0], HasSubstr("1 record is in memory only"));
  messages_.answer = Unsaved::Discard;
  EXPECT_TRUE(Window().close());
}

TEST_F(Keeping, ClosingInTheMiddleOfACaptureKeepsWhatCameBefore) {
  StartKeeping();
  Capture();
  AtCapture([this] { Window().close(); });
  Capture();
  windows_.reset();
  EXPECT_THAT(All(), SizeIs(1));
}

TEST(KeeperText, SaysNothingWhileAllIsWell) {
  EXPECT_EQ(KeeperText({.kept = 17, .lastId = 17, .unsafe = 2}), "");
}

TEST(KeeperText, TellsWhatWaitsWithTheTroubleAndItsCure) {
  EXPECT_EQ(KeeperText({.waiting = 3, .trouble = "The server is away. See to it."}),
            "3 records wait to be brought to the archive. The server is away. See to it.");
  EXPECT_EQ(KeeperText({.unsafe = 1, .trouble = "The disk is full. Make room."}),
            "1 record is in memory only until it can be archived. The disk is full. Make room.");
}

TEST(KeeperText, TellsWhatTheSizeLimitRemoved) {
  archive::KeeperState state;
  state.pruned = {.count = 64,
                  .oldest = std::chrono::system_clock::from_time_t(1'700'000'000),
                  .newest = std::chrono::system_clock::from_time_t(1'700'100'000),
                  .isEnough = false};
  const std::string text = KeeperText(state).toStdString();
  EXPECT_THAT(text, HasSubstr("The size limit of the archive removed 64 records, of 2023-11-1"));
  EXPECT_THAT(text, HasSubstr("Raise the limit"));
}

}  // namespace
}  // namespace kestrel
