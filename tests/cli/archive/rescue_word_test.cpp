// What the command line tells of a journal that was rescued in part.
// SPDX-License-Identifier: MIT
#include "archive/journal.h"
#include "archive/place.h"
#include "cli/program_bench.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using nlohmann::json;

class RescueWord : public ProgramBench {
 protected:
  TemporaryFolder folder_;
};

TEST_F(RescueWord, WhatIsLostOfTheJournalIsToldInNumbers) {
  const std::string place = (folder_.path() / "damaged.db").string();
  {
    archive::Archive archive = archive::Open({place});
    std::vector<archive::JournalEntry> entries(5);
    for (archive::JournalEntry& entry : entries) entry.uid = archive::NewUid();
    archive::PutEntries(archive, entries);
    archive.Connection().Run("update journal set text = 'a' || char(0) || 'b' where rowid = 2");
  }
  const std::string into = (folder_.path() / "rescued.db").string();
  EXPECT_EQ(Run({"--archive", place, "archive", "rescue", "--into", into}), ExitCode::Failure);
  EXPECT_EQ(out.str(),
            "0 records kept, 0 could not be read.\n"
            "Of the journal's entries 4 were kept, 1 could not be read.\n");
  EXPECT_EQ(Run({"--json", "--archive", place, "archive", "rescue", "--into", into}),
            ExitCode::Failure);
  const json told = json::parse(out.str());
  EXPECT_EQ(told["journal_kept"], 4);
  EXPECT_EQ(told["journal_lost"], 1);
  EXPECT_EQ(told["journal_whole"], false);
}

}  // namespace
}  // namespace kestrel
