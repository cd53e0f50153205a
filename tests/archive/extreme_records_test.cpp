// Records with the ends of everything that can be in them, kept and read again.
// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include "archive/archive.h"
#include "archive/journal.h"
#include "support/random_records.h"
#include "support/seeds.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using std::chrono::system_clock;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

template <typename Number>
Number AnyOf(Random& random, std::vector<Number> numbers) {
  return random.Of(numbers);
}

std::int32_t AnyWhole(Random& random) {
  return AnyOf<std::int32_t>(random, {kLeast, -1, 0, 1, 0xFFFF, 0x10000, kMost});
}

double AnyReal(Random& random) {
  using Limits = std::numeric_limits<double>;
  return AnyOf<double>(random, {0.0, -0.0, Limits::denorm_min(), Limits::min(), -1 / 3.0, 1e-300,
                                Limits::max(), Limits::lowest()});
}

// Every character but a NUL may stand in a text, in any number.
std::string AnyText(Random& random, int most = 20'000) {
  static const std::vector<std::string> kParts{
      "\x01",   "\t",     "\n",         "\r\n",       " ",  "'",     "\"",
      "\\",     "%",      "_",          "$1",         "--", "\x7F",  "K\u00FC",
      "\u2028", "\uFFFD", "\U0001F600", "\U0010FFFF", "x",  "\u05D0"};
  std::string text;
  for (int parts = random.OneIn(8) ? most : random.Below(20); parts > 0; --parts) {
    text += random.Of(kParts);
  }
  return text;
}

system_clock::time_point AnyMoment(Random& random) {
  using Duration = system_clock::duration;
  return system_clock::time_point(
      AnyOf<Duration>(random, {Duration::min(), Duration{-1}, Duration{1}, Duration::max(),
                               Duration{1'763'750'000'123'456'789}}));
}

NewRecord AnyRecord(Random& random) {
  RandomRecords records(static_cast<unsigned>(random.Below(1'000'000)));
  NewRecord made{.uid = NewUid(), .record = records.Next()};
  Record& record = made.record;
  record.time = AnyMoment(random);
  record.settings = SettingsFromWords(random.Word(), AnyWhole(random));
  record.scaledRange = AnyOf<std::int16_t>(random, {-32768, -1, 3, 32767});
  record.conditions = {std::numeric_limits<float>::lowest(), std::numeric_limits<float>::min(),
                       AnyWhole(random)};
  for (AxisAlarms& axis : record.alarms.axes) {
    axis = {AnyWhole(random), AnyWhole(random), AnyWhole(random)};
  }
  record.alarms.gPerPeakLsb = AnyReal(random);
  record.origin.countBefore = AnyWhole(random);
  record.origin.stored = AnyWhole(random);
  // No longer than strings of a board and names of computers and files are.
  constexpr int kShort = 60;
  record.sensor = {AnyWhole(random), AnyText(random, kShort), AnyText(random, kShort),
                   random.OneIn(2)};
  made.program = AnyText(random, kShort);
  made.bench = AnyText(random, kShort);
  Remarks& remarks = made.remarks;
  for (std::string* text :
       {&remarks.machine, &remarks.point, &remarks.orientation, &remarks.note}) {
    *text = AnyText(random);
  }
  remarks.rpm = AnyReal(random);
  for (int tags = random.Below(4); tags > 0; --tags) remarks.tags.push_back(AnyText(random));
  remarks.tags = CleanTags(remarks.tags);
  if (random.OneIn(2)) {
    made.wide = WideMark{.set = NewUid(), .wanted = random.OneIn(2) ? 0U : 0x7FFFFFFFU};
  }
  return made;
}

class ExtremeRecords : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override {
    place_ = GetParam().make();
    archive_.emplace(place_->Connect());
  }
  std::unique_ptr<TemporaryDatabase> place_;
  std::optional<Archive> archive_;
};

TEST_P(ExtremeRecords, ComeBackToTheLastBit) {
  WithSeeds(120, [this](Random& random) {
    const NewRecord made = AnyRecord(random);
    const auto kept = archive_->Get(archive_->Keep(made));
    ASSERT_TRUE(kept);
    ASSERT_EQ(static_cast<const NewRecord&>(*kept), made);
    EXPECT_EQ(kept->levels, LevelsFor(made.record));
  });
}

TEST_P(ExtremeRecords, AreFoundByTheirTexts) {
  WithSeeds(40, [this](Random& random) {
    const NewRecord made = AnyRecord(random);
    const std::int64_t id = archive_->Keep(made);
    const auto isFound = [&](const Filter& filter) {
      const auto ids = archive_->Find(filter);
      return std::ranges::find(ids, id) != ids.end();
    };
    EXPECT_TRUE(isFound({.machine = made.remarks.machine}));
    EXPECT_TRUE(isFound({.bench = made.bench}));
    EXPECT_TRUE(isFound({.text = made.remarks.note}));
    for (const std::string& tag : made.remarks.tags) EXPECT_TRUE(isFound({.tag = tag}));
  });
}

TEST_P(ExtremeRecords, EntriesOfTheJournalComeBackToo) {
  WithSeeds(40, [this](Random& random) {
    JournalEntry entry{.uid = NewUid(), .bench = AnyText(random), .sensor = AnyText(random)};
    entry.kind = AnyText(random);
    entry.began = AnyMoment(random);
    if (random.OneIn(2)) entry.ended = AnyMoment(random);
    entry.missed = AnyOf<std::int64_t>(random, {std::numeric_limits<std::int64_t>::min(), 0,
                                                std::numeric_limits<std::int64_t>::max()});
    entry.text = AnyText(random);
    PutEntries(*archive_, std::span(&entry, 1));
    const auto all = EntriesOf(*archive_);
    EXPECT_NE(std::ranges::find(all, entry), all.end());
  });
}

TEST_P(ExtremeRecords, ASpeedThatIsNoNumberIsNone) {
  RandomRecords records(1);
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double speed : {std::nan(""), infinite, -infinite}) {
    NewRecord made{.uid = NewUid(), .record = records.Next()};
    made.remarks.rpm = speed;
    EXPECT_EQ(archive_->Get(archive_->Keep(made))->remarks.rpm, std::nullopt);
  }
}

KESTREL_ON_EVERY_DATABASE(ExtremeRecords);

}  // namespace
}  // namespace kestrel::archive
