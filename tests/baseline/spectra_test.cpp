// Words out of the archive, whole and damaged.
// SPDX-License-Identifier: MIT
#include "baseline/spectra.h"

#include "archive/packed_words.h"
#include "made_records.h"

namespace kestrel::baseline {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class BaselineSpectra : public testing::Test {
 protected:
  Loaded Load() {
    const std::vector<Part> parts{{.verdict = Verdict::Good, .filter = {.tag = "good"}},
                                  {.verdict = Verdict::Bad, .filter = {.tag = "bad"}}};
    return baseline::Load(made.archive, SetsOf(made.archive, parts));
  }
  static WordsOf Numbered(int number) {
    return [number](Axis axis, int bin) {
      return number * 600 + static_cast<int>(Index(axis)) * 256 + bin;
    };
  }
  MadeArchive made;
};

TEST_F(BaselineSpectra, HoldEveryWordOfEveryMemberGoodBeforeBad) {
  for (int i = 0; i < 30; ++i) {
    (void)made.Keep(MadeSpectrum(i, Numbered(i)), {i % 3 == 0 ? "bad" : "good"});
  }
  const Loaded loaded = Load();
  ASSERT_TRUE(loaded.whole);
  ASSERT_EQ(loaded.spectra.Count(), 30U);
  std::vector<Member> members = loaded.sets.good;
  members.insert(members.end(), loaded.sets.bad.begin(), loaded.sets.bad.end());
  for (std::size_t i = 0; i < members.size(); ++i) {
    const auto number = static_cast<int>((members[i].time - MinuteOf(0)) / std::chrono::minutes(1));
    for (const Axis axis : kAxes) {
      for (int bin = 0; bin < 256; ++bin) {
        ASSERT_EQ(loaded.spectra.At(i, axis, static_cast<std::size_t>(bin)),
                  Numbered(number)(axis, bin));
      }
    }
  }
}

TEST_F(BaselineSpectra, IdsFarApartAreFoundAsWell) {
  std::vector<std::int64_t> wanted;
  for (int i = 0; i < 100; ++i) {
    const auto id = made.Keep(MadeSpectrum(i, Numbered(i)), {i % 20 == 7 ? "good" : "else"});
    if (i % 20 == 7) wanted.push_back(id);
  }
  const Loaded loaded = Load();
  ASSERT_EQ(loaded.spectra.Count(), wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    EXPECT_EQ(loaded.spectra.At(i, Axis::X, 0), 600 * (7 + 20 * i));
  }
}

TEST_F(BaselineSpectra, EmptyDamagedAndMissingRecordsAreLeftOutAndTheOthersCloseUp) {
  (void)made.Keep(MadeSpectrum(0, Numbered(0)), {"good"});
  const auto blank = made.Keep(MadeSpectrum(1, Flat(0)), {"good"});
  const auto erased = made.Keep(MadeSpectrum(2, Flat(65535)), {"good"});
  const auto cut = made.Keep(MadeSpectrum(3, Numbered(3)), {"good"});
  const auto missing = made.Keep(MadeSpectrum(4, Numbered(4)), {"good"});
  (void)made.Keep(MadeSpectrum(5, Numbered(5)), {"good"});
  const auto badBlank = made.Keep(MadeSpectrum(6, Flat(0)), {"bad"});
  (void)made.Keep(MadeSpectrum(7, Numbered(7)), {"bad"});
  database::Database& database = made.archive.Connection();
  database.Run("update points set words = $2 where record = $1", {cut, database::Bytes(1535)});
  database.Run("delete from points where record = $1", {missing});
  const Loaded loaded = Load();
  EXPECT_THAT(loaded.sets.good, SizeIs(2));
  EXPECT_THAT(loaded.sets.bad, SizeIs(1));
  ASSERT_EQ(loaded.spectra.Count(), 3U);
  EXPECT_EQ(loaded.spectra.At(0, Axis::Z, 255), 767);
  EXPECT_EQ(loaded.spectra.At(1, Axis::X, 0), 3000);
  EXPECT_EQ(loaded.spectra.At(2, Axis::X, 0), 4200);
  EXPECT_EQ(loaded.spectra.Tiles(), 1U);
  for (const Word word : loaded.spectra.Of(0, Axis::X, 0).subspan(3)) EXPECT_EQ(word, 0);
  ASSERT_THAT(loaded.sets.leftOut, SizeIs(3));
  EXPECT_EQ(loaded.sets.leftOut[0].title, "Empty");
  EXPECT_THAT(loaded.sets.leftOut[0].ids, ElementsAre(blank, erased, badBlank));
  EXPECT_EQ(loaded.sets.leftOut[1].title, "Damaged");
  EXPECT_THAT(loaded.sets.leftOut[1].ids, ElementsAre(cut));
  EXPECT_EQ(loaded.sets.leftOut[2].title, "Without points");
  EXPECT_THAT(loaded.sets.leftOut[2].ids, ElementsAre(missing));
}

TEST_F(BaselineSpectra, WordsThatWereDecodedWithASignCountByTheirSize) {
  (void)made.Keep(MadeSpectrum(0, [](Axis, int bin) { return bin == 0 ? -32768 : -bin; }),
                  {"good"});
  const Loaded loaded = Load();
  EXPECT_EQ(loaded.spectra.At(0, Axis::Y, 0), 32768);
  EXPECT_EQ(loaded.spectra.At(0, Axis::Y, 255), 255);
}

TEST_F(BaselineSpectra, WhoeverAsksThatItEndsGetsNothing) {
  (void)made.Keep(MadeSpectrum(0, Flat(1)), {"good"});
  std::size_t all = 0;
  const Loaded loaded = baseline::Load(
      made.archive, SetsOf(made.archive, std::vector<Part>{{.filter = {.tag = "good"}}}),
      [&](std::size_t, std::size_t of) {
        all = of;
        return false;
      });
  EXPECT_EQ(all, 1U);
  EXPECT_FALSE(loaded.whole);
  EXPECT_EQ(loaded.spectra.Count(), 0U);
  EXPECT_THAT(loaded.sets.good, IsEmpty());
}

TEST_F(BaselineSpectra, MoreThanFitIntoMemoryAreRefusedWithTheCure) {
  Sets sets;
  sets.good.resize(kMostRecords + 1);
  try {
    (void)baseline::Load(made.archive, sets);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(),
                 "400,001 records are more than a baseline can hold; take one in an hour or so, at "
                 "most 400,000.");
  }
}

}  // namespace
}  // namespace kestrel::baseline
