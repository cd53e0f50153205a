// What is damaged of an archive is named, and what cannot be is not read as if it were.
// SPDX-License-Identifier: MIT
#include <limits>

#include "archive/archive.h"
#include "archive/packed_words.h"
#include "archive/schema.h"
#include "archive/version_1.h"
#include "archive/wrapped_database.h"
#include "support/random_records.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;
using database::Fault;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::size_t kPage = 16384;

class Damaged : public testing::TestWithParam<DatabaseKind> {
 protected:
  std::int64_t Keep() { return archive_->Keep({NewUid(), records_.Next(), {}, "0.1.0", "bench"}); }
  void Run(const std::string& sql) { place_->Connect()->Run(sql); }
  std::string WhyNot(std::int64_t id) {
    try {
      static_cast<void>(archive_->Get(id));
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.fault, Fault::Corrupt);
      return error.what();
    }
    return "it was read";
  }

  std::unique_ptr<TemporaryDatabase> place_ = GetParam().make();
  std::optional<Archive> archive_{place_->Connect()};
  RandomRecords records_{11};
};

TEST_P(Damaged, RecordsWithoutPointsAreNamedInTheirOrder) {
  const std::int64_t one = Keep();
  Keep();
  const std::int64_t three = Keep();
  EXPECT_THAT(archive_->Damage(), IsEmpty());
  for (const std::int64_t id : {three, one}) {
    Run("delete from points where record = " + std::to_string(id));
  }
  const std::string first = "record " + std::to_string(one) + " has no points";
  EXPECT_THAT(archive_->Damage(),
              ElementsAre(first, "record " + std::to_string(three) + " has no points"));
  EXPECT_EQ(WhyNot(one), first);
}

TEST_P(Damaged, PointsOfAnotherLengthAreNotRead) {
  const std::int64_t id = Keep();
  archive_->Connection().Run("update points set words = $1", {database::Bytes(100, 7)});
  EXPECT_THAT(WhyNot(id), HasSubstr("are 100 bytes long, not 1536"));
}

TEST_P(Damaged, ANumberThatIsTooLargeForItsPlaceIsNotCutShort) {
  const std::int64_t id = Keep();
  Run("update record set count_before = 5000000000");
  EXPECT_EQ(WhyNot(id), "5000000000 is too large for its place");
  Run("update record set count_before = null, scaled_range = -40000");
  EXPECT_EQ(WhyNot(id), "-40000 is too large for its place");
}

TEST_P(Damaged, AUidOfAnotherLengthIsReadAsFarAsItGoes) {
  const std::int64_t id = Keep();
  const auto uidOf = [&](const database::Bytes& bytes) {
    archive_->Connection().Run("update record set uid = $1", {bytes});
    return archive_->Get(id)->uid;
  };
  EXPECT_EQ(uidOf({7, 8}), (Uid{7, 8}));
  database::Bytes tooLong(20, 3);
  Uid first{};
  first.fill(3);
  EXPECT_EQ(uidOf(tooLong), first);
}

TEST_P(Damaged, ALevelOfWhichAHalfIsMissingIsNone) {
  const std::int64_t id = Keep();
  Run("update record set rms_x = 1, top_x = null, rms_y = null, top_y = 2, rms_z = 3, top_z = 4");
  const KeptLevels levels = archive_->Get(id)->levels;
  EXPECT_FALSE(levels[0]);
  EXPECT_FALSE(levels[1]);
  EXPECT_EQ(levels[2], (AxisLevels{.rmsG = 3, .peakG = 4}));
}

TEST_P(Damaged, AMarkOfASetOfWhichAHalfIsMissingIsNone) {
  const std::int64_t id = Keep();
  Run("update record set wide_wanted = 15");
  EXPECT_FALSE(archive_->Get(id)->wide);
  Run("update record set wide_wanted = null");
  archive_->Connection().Run("update record set wide_set = $1", {database::Bytes(16, 1)});
  EXPECT_FALSE(archive_->Get(id)->wide);
}

TEST_P(Damaged, WithoutItsSourceARecordIsReadWhereThatIsAskedFor) {
  NewRecord made{NewUid(), records_.Next(), {.note = "n"}, "0.1.0", "bench"};
  const std::int64_t id = archive_->Keep(made);
  auto kept = archive_->GetWithoutSource(id);
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->record.axes, made.record.axes);
  made.record.sensor = {};
  made.program.clear();
  made.bench.clear();
  EXPECT_EQ(static_cast<const NewRecord&>(*kept), made);
  EXPECT_FALSE(archive_->GetWithoutSource(id + 1));
}

TEST_P(Damaged, AFaultThatIsNoDamageIsNotNamedAsDamage) {
  bool isAway = false;
  Archive archive(std::make_unique<WrappedDatabase>(place_->Connect(), [&](const std::string&) {
    if (isAway) throw DatabaseError(Fault::Lost, "away");
  }));
  isAway = true;
  EXPECT_THROW(static_cast<void>(archive.Damage()), DatabaseError);
}

TEST_P(Damaged, ATableThatIsNotThereIsNoArchiveToRescue) {
  const auto other = GetParam().make();
  EXPECT_THROW(static_cast<void>(Archive::ForRescue(other->Connect())), DatabaseError);
  other->Connect()->Run("create table about(name text primary key, value bigint not null)");
  EXPECT_EQ(ContentsOf(*other->Connect()), Contents::Foreign);
  EXPECT_THROW(Archive(other->Connect()), DatabaseError);
  EXPECT_THROW(static_cast<void>(Archive::ForReading(other->Connect())), DatabaseError);
}

TEST_P(Damaged, AnArchiveThatDoesNotTellItsVersionIsKnownByItsTables) {
  Run("update about set value = 0");
  EXPECT_EQ(Archive::ForRescue(place_->Connect()).Version(), kSchemaVersion);
  Run("drop table journal");
  EXPECT_EQ(Archive::ForRescue(place_->Connect()).Version(), 2);
  const auto old = GetParam().make();
  MakeVersion1(*old->Connect());
  EXPECT_EQ(Archive::ForRescue(old->Connect()).Version(), 1);
  old->Connect()->Run("delete from about");
  EXPECT_EQ(Archive::ForRescue(old->Connect()).Version(), 1);
}

KESTREL_ON_EVERY_DATABASE(Damaged);

class DamagedFile : public testing::Test {
 protected:
  DamagedFile() {
    Archive archive(place_.Connect());
    for (int i = 0; i < 5; ++i) {
      archive.Keep({NewUid(), RandomRecords(1).Next(), {}, "0.1.0", "bench"});
    }
  }
  std::int64_t FirstPageOf(const std::string& table) {
    return Number(*place_.Connect(), "select rootpage from sqlite_master where name = $1", {table});
  }
  // Pages are numbered from 1 on.
  void Lose(std::int64_t page) {
    std::fstream file(place_.Name(), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp((page - 1) * static_cast<std::int64_t>(kPage));
    file << std::string(kPage, '\0');
  }
  [[nodiscard]] std::unique_ptr<database::Database> Read() const {
    return std::make_unique<database::SqliteDatabase>(
        database::SqliteChoice{.file = place_.Name(), .access = database::Access::ReadOnly});
  }

  TemporaryFile place_;
};

TEST_F(DamagedFile, ThatIsTooDamagedToBeGoneThroughIsNamedAsThat) {
  const std::int64_t page = FirstPageOf("points");
  Archive whole(place_.Connect());
  EXPECT_THAT(whole.Damage(), IsEmpty());
  Lose(page);
  Archive archive = Archive::ForReading(Read());
  EXPECT_THAT(archive.Damage(), testing::Contains(HasSubstr("malformed")));
}

TEST_F(DamagedFile, ThatDoesNotTellItsVersionAnyMoreIsKnownByItsTables) {
  Lose(FirstPageOf("about"));
  EXPECT_EQ(Archive::ForRescue(Read()).Version(), kSchemaVersion);
}

TEST_F(DamagedFile, OfWhichTheRecordsAreLostTooIsOfTheLatestVersionItCanBe) {
  place_.Connect()->Run("drop table journal");
  const std::int64_t about = FirstPageOf("about");
  const std::int64_t record = FirstPageOf("record");
  Lose(about);
  Lose(record);
  EXPECT_EQ(Archive::ForRescue(Read()).Version(), 2);
}

TEST(Words, ThatDoNotFitSixteenBitsAreRefused) {
  Record record;
  for (const double word :
       {-32'769.0, 65'536.0, 0.5, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
    record.Of(Axis::Y).raw(3) = word;
    EXPECT_THROW(static_cast<void>(PackedWords(record)), RuntimeError) << word;
  }
  for (const double word : {-32'768.0, 65'535.0}) {
    record.Of(Axis::Y).raw(3) = word;
    const database::Bytes bytes = PackedWords(record);
    Record back;
    UnpackWords(bytes, AreSigned(record), back);
    EXPECT_EQ(back.Of(Axis::Y).raw(3), word);
    EXPECT_EQ(AreSigned(record), word < 0);
  }
}

TEST(KeptLevels, AreNoneWhereARecordHoldsValuesThatAreNoNumbers) {
  for (const RecordKind kind : {RecordKind::Time, RecordKind::Spectrum}) {
    Record record;
    record.kind = kind;
    record.settings = SettingsFromWords(0x1D01, 0);
    record.scaledRange = static_cast<std::int16_t>(record.settings.range);
    for (int i = 0; i < static_cast<int>(record.Points()); ++i) record.Of(Axis::X).data(i) = i;
    EXPECT_TRUE(LevelsFor(record)[0]);
    record.Of(Axis::X).data(7) = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(LevelsFor(record)[0]);
    EXPECT_TRUE(LevelsFor(record)[1]);
  }
}

}  // namespace
}  // namespace kestrel::archive
