// An archive of an earlier version is brought up to date whole or not at all, whatever the disk
// does. SPDX-License-Identifier: MIT
#include "archive/operations.h"
#include "archive/place.h"
#include "archive/schema.h"
#include "archive/version_1.h"
#include "support/sqlite_call_faults.h"
#include "support/temporary_folder.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;

class UpgradesOnDisks : public testing::TestWithParam<Disk> {};

TEST_P(UpgradesOnDisks, AreDoneWholeOrNotAtAllAtEveryCallAndTheNextTime) {
  TemporaryFolder folder;
  const std::string file = (folder.path() / "old.db").string();
  {
    database::SqliteDatabase database({.file = file});
    MakeVersion1(database);
  }
  const std::string old = folder.Content("old.db");
  const auto contents = [&] {
    Archive archive = Open({file});
    return HeldBy(archive);
  };
  const Holding whole = contents();
  ASSERT_EQ(whole.records.size(), 1U);
  bool isMet = true;
  for (int number = 1; isMet; ++number) {
    SCOPED_TRACE(number);
    for (const char* end : {"-wal", "-shm", ""}) std::filesystem::remove(file + end);
    folder.Write("old.db", old);
    {
      const SqliteCallFaults faults(number, GetParam().error, GetParam().count);
      try {
        const Archive archive = Open({file});
        EXPECT_EQ(archive.Version(), kSchemaVersion);
      } catch (const DatabaseError& error) {
        EXPECT_STRNE(error.what(), "");
      }
      isMet = faults.Met();
    }
    {
      Archive read = Open({file}, database::Access::ReadOnly);
      ASSERT_TRUE(read.Version() == 1 || read.Version() == kSchemaVersion);
      ASSERT_EQ(HeldBy(read), whole);
    }
    ASSERT_EQ(contents(), whole);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, UpgradesOnDisks, testing::ValuesIn(kDisks),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace kestrel::archive
