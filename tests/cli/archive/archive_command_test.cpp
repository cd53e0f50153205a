// Records are kept as they are captured, and the words about the archive.
// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>

#include "archive/place.h"
#include "cli/archive/archive_commands_bench.h"

namespace kestrel {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST_F(ArchiveCommands, EveryCaptureIsKeptWithoutBeingAskedFor) {
  Capture({"--count", "3"});
  const json records = RunJson({"archive", "list"});
  ASSERT_EQ(records.size(), 3U);
  const json& last = records[0];
  EXPECT_EQ(last["id"], 3);
  EXPECT_EQ(last["kind"], "spectrum");
  EXPECT_EQ(last["settings"]["averages"], 1);
  EXPECT_EQ(last["settings"]["sample_rate_option"], 0);
  EXPECT_EQ(last["simulated"], true);
  EXPECT_THAT(last["time"].get<std::string>(), testing::EndsWith("Z"));
  EXPECT_GT(last["levels"]["Z"]["rms_g"].get<double>(), 0.1);
}

TEST_F(ArchiveCommands, RecordsWithAnAlarmAreListedAmongTheOthersAndAloneWhereThatIsAskedFor) {
  EXPECT_EQ(Simulate({"--scenario", "bearing-fault", "capture", "--averages", "1", "--count", "6"}),
            ExitCode::Success);
  EXPECT_EQ(Ids(), json({6, 5, 4, 3, 2, 1}));
  const json alarms = Ids({"--alarm"});
  EXPECT_THAT(alarms, Not(IsEmpty()));
  EXPECT_LT(alarms.size(), 6U);
}

TEST_F(ArchiveCommands, AKeptRecordIsTheCapturedOne) {
  const json captured = SimulateJson({"capture", "--averages", "1", "--levels"});
  json shown = RunJson({"archive", "show", "1"})["record"];
  for (const char* axis : {"X", "Y", "Z"}) {
    EXPECT_EQ(shown["axes"][axis]["data_g"], captured["axes"][axis]["data_g"]);
  }
  EXPECT_EQ(shown["status"], captured["status"]);
  EXPECT_EQ(shown["time"], captured["time"]);
}

TEST_F(ArchiveCommands, NothingIsKeptWhereThatIsSaid) {
  EXPECT_EQ(Simulate({"--no-archive", "capture", "--averages", "1"}), ExitCode::Success);
  EXPECT_EQ(Run({"archive", "list"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), AllOf(HasSubstr("There is no archive "), HasSubstr("archive.db yet.")));
  EXPECT_EQ(Run({"--no-archive", "archive", "list"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("--archive"));
}

TEST_F(ArchiveCommands, AStoppedCaptureThatBroughtNothingNewIsNotKept) {
  Capture();
  interrupted = [this] { return clock.Monotonic() > std::chrono::seconds(1); };
  EXPECT_EQ(Simulate({"capture", "--averages", "255"}), ExitCode::NotNew);
  interrupted = [] { return false; };
  EXPECT_EQ(Ids(), json({1}));
}

TEST_F(ArchiveCommands, RemarksAreKeptAndChanged) {
  Capture({"--machine", "Pump \"3\"", "--point", "DE", "--rpm", "2980", "--note", "a\tb\nc",
           "--tag", "new", "--tag", "good"});
  json kept = RunJson({"archive", "list"})[0];
  EXPECT_EQ(kept["machine"], "Pump \"3\"");
  EXPECT_EQ(kept["rpm"], 2980);
  EXPECT_EQ(kept["tags"], json({"good", "new"}));
  EXPECT_EQ(Run({"archive", "list"}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("\tPump \"3\"\tDE\tgood, new\ta b c\n"));
  EXPECT_EQ(Run({"archive", "note", "1", "--note", "'; drop table record; --"}), ExitCode::Success);
  kept = RunJson({"archive", "list"})[0];
  EXPECT_EQ(kept["note"], "'; drop table record; --");
  EXPECT_EQ(kept["machine"], "Pump \"3\"");
  EXPECT_EQ(Run({"archive", "note", "1"}), ExitCode::Failure);
}

TEST_F(ArchiveCommands, TheListIsChosenFrom) {
  Capture({"--machine", "Pump"});
  Capture({"--machine", "Fan", "--option", "2", "--tag", "x"});
  Capture({"--mode", "time"});
  EXPECT_EQ(Ids(), json({3, 2, 1}));
  EXPECT_EQ(Ids({"--limit", "2"}), json({3, 2}));
  EXPECT_EQ(Ids({"--machine", "Pump"}), json({1}));
  EXPECT_EQ(Ids({"--option", "2"}), json({2}));
  EXPECT_EQ(Ids({"--kind", "time"}), json({3}));
  EXPECT_EQ(Ids({"--tag", "x"}), json({2}));
  EXPECT_EQ(Ids({"--text", "PUM"}), json({1}));
  EXPECT_EQ(Ids({"--until", "1990-01-01"}), json::array());
  EXPECT_EQ(Run({"archive", "list", "--from", "2026-13-01"}), ExitCode::Usage);
  EXPECT_THAT(error.str(), HasSubstr("\"2026-13-01\""));
}

TEST_F(ArchiveCommands, DeletedOnesComeBack) {
  Capture({"--count", "2"});
  EXPECT_EQ(Run({"archive", "delete", "1"}), ExitCode::Success);
  EXPECT_EQ(Ids(), json({2}));
  EXPECT_EQ(Ids({"--deleted"}), json({1}));
  EXPECT_EQ(Run({"archive", "delete", "--undo", "1"}), ExitCode::Success);
  EXPECT_EQ(Ids(), json({2, 1}));
  EXPECT_EQ(Run({"archive", "delete", "--for-good", "1"}), ExitCode::Success);
  EXPECT_EQ(Ids(), json({2}));
  EXPECT_EQ(Run({"archive", "delete", "2", "7"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "There is no record 7 in the archive.\n");
  EXPECT_EQ(Ids(), json({2}));
}

TEST_F(ArchiveCommands, ASoundArchiveIsSaidToBeSound) {
  Capture();
  EXPECT_EQ(Run({"archive", "check"}), ExitCode::Success);
  EXPECT_EQ(out.str(), "1 record, nothing is damaged.\n");
  EXPECT_THAT(RunJson({"archive", "check"})["damage"], IsEmpty());
}

TEST_F(ArchiveCommands, WhatCanBeReadOfADamagedArchiveIsSaved) {
  Capture({"--count", "40"});
  const std::string file = folder_.Content("data/archive.db");
  std::string damaged = file;
  ASSERT_GT(damaged.size(), 60'000U);
  // Somewhere among the points.
  std::fill_n(damaged.end() - 40'000, 20'000, '\x5a');
  folder_.Write("damaged.db", damaged);
  const std::string place = (folder_.path() / "damaged.db").string();
  EXPECT_EQ(Run({"--archive", place, "archive", "check"}), ExitCode::Failure);
  EXPECT_NE(out.str(), "");
  const std::string rescued = (folder_.path() / "rescued.db").string();
  EXPECT_EQ(Run({"--json", "--archive", place, "archive", "rescue", "--into", rescued}),
            ExitCode::Failure);
  const json told = json::parse(out.str());
  EXPECT_GT(told["kept"].get<int>(), 10);
  EXPECT_GT(told["lost"].get<int>(), 0);
  EXPECT_EQ(told["kept"].get<int>() + told["lost"].get<int>(), 40);
  EXPECT_EQ(told["journal_kept"], 0);
  EXPECT_EQ(told["journal_lost"], 0);
  EXPECT_EQ(told["journal_whole"], true);
  EXPECT_EQ(Run({"--archive", rescued, "archive", "check"}), ExitCode::Success);
  EXPECT_EQ(folder_.Content("damaged.db"), damaged);
}

TEST_F(ArchiveCommands, NothingIsRescuedFromWhatWasNeverAnArchive) {
  const std::string place = (folder_.path() / "picture.db").string();
  std::ofstream(place) << "not a database at all, but long enough to be taken for one at first";
  const std::string into = (folder_.path() / "rescued.db").string();
  EXPECT_EQ(Run({"--archive", place, "archive", "rescue", "--into", into}), ExitCode::Failure);
  EXPECT_THAT(error.str(), AllOf(HasSubstr("Nothing can be read of " + place),
                                 Not(HasSubstr("archive rescue"))));
  EXPECT_FALSE(std::filesystem::exists(into));
}

TEST_F(ArchiveCommands, AWordThatIsNoNumberOfARecordIsNamed) {
  EXPECT_EQ(Run({"archive", "show", "last"}), ExitCode::Usage);
  EXPECT_THAT(error.str(), HasSubstr("id: \"last\" is not the number of a record"));
}

TEST_F(ArchiveCommands, AnArchiveThatCannotBeHadStopsNoCapture) {
  folder_.Write("data", "a file where the folder should be");
  EXPECT_EQ(Simulate({"capture", "--averages", "1"}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("peak"));
  EXPECT_THAT(error.str(), HasSubstr("cannot be opened"));
  EXPECT_THAT(error.str(), HasSubstr("1 record could be kept nowhere."));
}

TEST_F(ArchiveCommands, OneThatWasNamedAndCannotBeHadFailsAndItsRecordsWait) {
  const std::string place = (folder_.Write("file", "x") / "archive.db").string();
  EXPECT_EQ(Simulate({"--archive", place, "capture", "--averages", "1"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("will be brought to the archive"));
  std::filesystem::remove(folder_.path() / "file");
  EXPECT_EQ(Simulate({"--archive", place, "capture", "--averages", "1"}), ExitCode::Success);
  EXPECT_EQ(Run({"--json", "--archive", place, "archive", "list"}), ExitCode::Success);
  EXPECT_EQ(json::parse(out.str()).size(), 2U);
}

TEST_F(ArchiveCommands, RecordsGoOutAndComeBackInTheFormatsThatCanBeRead) {
  Capture({"--machine", "Pump"});
  Capture({"--mode", "time"});
  const json captured = RunJson({"archive", "show", "2"})["record"];
  for (const char* format : {"uff58", "uff58b"}) {
    const std::string into = (folder_.path() / format).string() + ".db";
    EXPECT_EQ(Run({"archive", "export", "--format", format, "--out", "/files/r", "2", "1"}),
              ExitCode::Success)
        << error.str();
    EXPECT_EQ(Run({"--archive", into, "archive", "import", "/files/r", "--tag", "old"}),
              ExitCode::Success)
        << error.str();
    EXPECT_EQ(out.str(), "2 records\n");
    const json list = RunJson({"--archive", into, "archive", "list"});
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0]["tags"], json({"old"}));
    const json shown = RunJson({"--archive", into, "archive", "show", "1"})["record"];
    for (const char* axis : {"X", "Y", "Z"}) {
      EXPECT_EQ(shown["axes"][axis]["data_g"], captured["axes"][axis]["data_g"]) << format;
    }
  }
}

TEST_F(ArchiveCommands, TheSameFileIsImportedOnce) {
  Capture();
  EXPECT_EQ(Run({"archive", "export", "--format", "uff58b", "--out", "/files/r", "1"}),
            ExitCode::Success);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Run({"archive", "import", "/files/r"}), ExitCode::Success) << error.str();
  }
  EXPECT_EQ(RunJson({"archive", "list"}).size(), 2U);  // the captured one, and that of the file
}

TEST_F(ArchiveCommands, OfSeveralFilesAllAreImportedOrNone) {
  Capture();
  EXPECT_EQ(Run({"archive", "export", "--format", "uff58", "--out", "/files/r", "1"}),
            ExitCode::Success);
  files.contents["/files/cut"] = files.contents["/files/r"].substr(0, 700);
  EXPECT_EQ(Run({"archive", "import", "/files/r", "/files/cut"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("/files/cut, line "));
  EXPECT_EQ(Run({"archive", "import", "/files/none"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "The file /files/none cannot be read.\n");
  EXPECT_EQ(Ids(), json({1}));
}

TEST_F(ArchiveCommands, WhatAFileDoesNotTellIsAskedFor) {
  Capture({"--mode", "time"});
  EXPECT_EQ(Run({"archive", "export", "--format", "wav", "--out", "/files/r.wav", "1"}),
            ExitCode::Success);
  EXPECT_EQ(Run({"archive", "import", "/files/r.wav"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("--time"));
  EXPECT_EQ(Run({"archive", "import", "/files/r.wav", "--time", "2026-03-14T08:26"}),
            ExitCode::Success)
      << error.str();
  EXPECT_EQ(RunJson({"archive", "list"})[1]["time"], "2026-03-14T08:26:00.000Z");
}

TEST_F(ArchiveCommands, WhatAFormatCannotHoldIsRefused) {
  Capture();
  EXPECT_EQ(Run({"archive", "export", "--format", "wav", "--out", "/files/r.wav", "1"}),
            ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("time record"));
  EXPECT_FALSE(files.contents.contains("/files/r.wav"));
  EXPECT_EQ(Run({"archive", "export", "--format", "xls", "--out", "r", "1"}), ExitCode::Usage);
  EXPECT_EQ(Run({"archive", "export", "--format", "csv", "--out", "r", "9"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "There is no record 9 in the archive.\n");
}

}  // namespace
}  // namespace kestrel
