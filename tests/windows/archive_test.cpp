// The archive and the files made of it, in folders whose names are no ASCII.
// SPDX-License-Identifier: MIT
#include "archive/archive.h"

#include <gtest/gtest.h>

#include "archive/place.h"
#include "exchange/exported.h"
#include "exchange/imported.h"
#include "exchange/kept_note.h"
#include "platform/system_files.h"
#include "seams/path_text.h"
#include "support/random_records.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kNoLimit = 1U << 24U;

class WindowsArchive : public testing::Test {
 protected:
  WindowsArchive() { fs::remove_all(top_); }
  ~WindowsArchive() override { fs::remove_all(top_); }

  archive::NewRecord Made(RecordKind kind) {
    archive::NewRecord made{
        archive::NewUid(), records_.Next(), {.machine = "Kühlwasser"}, "0.1.0", "bench"};
    while (made.record.kind != kind) made.record = records_.Next();
    return made;
  }

  const fs::path top_ = fs::temp_directory_path() / L"S \u00FCd \u6E2C";
  const archive::Place place_{TextOf(top_ / "archive.db")};
  RandomRecords records_{1};
};

TEST_F(WindowsArchive, IsMadeWithItsFolderKeptToAndQueried) {
  {
    archive::Archive archive = archive::Open(place_);
    for (int i = 0; i < 20; ++i) archive.Keep(Made(RecordKind::Spectrum));
    archive.Keep(Made(RecordKind::Time));
  }
  EXPECT_TRUE(fs::exists(top_ / "archive.db"));
  archive::Archive again = archive::Open(place_, database::Access::ReadOnly);
  EXPECT_EQ(again.Count(), 21);
  EXPECT_EQ(again.Find({.kind = RecordKind::Time}).size(), 1U);
  EXPECT_TRUE(again.Damage().empty());
}

TEST_F(WindowsArchive, WhoReadsDoesNotWaitForWhoWrites) {
  archive::Archive writer = archive::Open(place_);
  const std::int64_t first = writer.Keep(Made(RecordKind::Spectrum));
  archive::Archive reader = archive::Open(place_, database::Access::ReadOnly);
  archive::Archive other = archive::Open(place_);
  database::Transaction transaction(writer.Connection());
  EXPECT_EQ(reader.Count(), 1);
  EXPECT_TRUE(other.Get(first));
  transaction.Commit();
  other.Keep(Made(RecordKind::Spectrum));
  EXPECT_EQ(writer.Count(), 2);
  EXPECT_EQ(reader.Count(), 2);
}

TEST_F(WindowsArchive, EachFormatIsWrittenIntoAFileAndReadAgain) {
  archive::Archive archive = archive::Open(place_);
  const std::int64_t id = archive.Keep(Made(RecordKind::Time));
  const auto kept = archive.Get(id);
  ASSERT_TRUE(kept);
  const std::vector<exchange::NotedRecord> records{exchange::Noted(*kept)};
  SystemFiles files;
  for (const exchange::ExportFormat format : exchange::kExportFormats) {
    EXPECT_TRUE(exchange::IsBuiltIn(format)) << exchange::NameOf(format);
    const auto bytes = exchange::Exported(records, format);
    ASSERT_TRUE(bytes) << bytes.Why().Text();
    const fs::path file = top_ / PathOf("Lager Süd" + exchange::ExtensionOf(format));
    files.ReplaceWhole(file, *bytes);
    EXPECT_EQ(files.Read(file, kNoLimit), *bytes);
    if (format == exchange::ExportFormat::Mat || format == exchange::ExportFormat::Csv ||
        format == exchange::ExportFormat::Json) {
      continue;  // for other programs only
    }
    const auto read = exchange::Imported(TextOf(file.filename()), *bytes);
    ASSERT_TRUE(read) << read.Why().Text();
    ASSERT_EQ(read->records.size(), 1U);
    EXPECT_EQ(read->records.front().kind, RecordKind::Time);
    EXPECT_EQ(read->records.front().traces.size(), 3U);
  }
}

TEST_F(WindowsArchive, AServerThatIsNotThereIsToldWithItsAddress) {
  try {
    static_cast<void>(archive::Open({"postgresql://tester@127.0.0.1:9/kestrel"}));
    FAIL() << "nothing was thrown";
  } catch (const database::DatabaseError& error) {
    EXPECT_EQ(error.fault, database::Fault::Lost);
    EXPECT_NE(std::string(error.what()).find("127.0.0.1"), std::string::npos) << error.what();
  }
}

}  // namespace
}  // namespace kestrel
