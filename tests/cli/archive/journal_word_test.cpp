// The archive's journal listed, searched, and rescued with the records.
// SPDX-License-Identifier: MIT
#include "cli/archive/journal_word.h"

#include "archive/place.h"
#include "cli/program_bench.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using nlohmann::json;
using ::testing::HasSubstr;
using Words = std::vector<std::string>;

class JournalWords : public ProgramBench {
 protected:
  JournalWords() {
    usualArchive = {(folder_.path() / "archive.db").string()};
    auto archive = archive::Open(usualArchive);
    archive::PutEntries(archive, Entries());
  }

  static std::vector<archive::JournalEntry> Entries() {
    constexpr std::chrono::system_clock::time_point kNoon{
        std::chrono::sys_days{std::chrono::year{2024} / 3 / 14} + 12h};
    return {{.uid = {1},
             .bench = "Hall 3",
             .sensor = "Pump 7",
             .kind = "sensor away",
             .began = kNoon,
             .ended = kNoon + 5min,
             .missed = 30,
             .text = "The sensor was lost."},
            {.uid = {2},
             .bench = "Hall 3",
             .sensor = "Fan",
             .kind = "alarm",
             .began = kNoon + 10min,
             .text = "Warning 1, X"},
            // What a terminal or a reader of lines would take for something else.
            {.uid = {3},
             .bench = "b'; drop table journal; --",
             .sensor = "s\x1B[2J\nPump",
             .kind = "late",
             .began = kNoon + 20min,
             .ended = kNoon + 30min,
             .text = "one\r\ntwo \xFF"}};
  }
  // Uids of what is listed, by their first two digits.
  std::string Listed(const Words& more) {
    Words words{"--json", "archive", "journal"};
    words.insert(words.end(), more.begin(), more.end());
    EXPECT_EQ(Run(words), ExitCode::Success) << error.str();
    std::string uids;
    for (const json& entry : json::parse(out.str())) {
      uids += entry["uid"].get<std::string>().substr(0, 2) + " ";
    }
    return uids;
  }

  TemporaryFolder folder_;
};

TEST_F(JournalWords, AreALineEach) {
  ASSERT_EQ(Run({"archive", "journal", "--bench", "Hall 3"}), ExitCode::Success) << error.str();
  EXPECT_EQ(
      out.str(),
      "2024-03-14T12:10:00.000Z  still open                Hall 3, Fan  alarm: Warning 1, X\n"
      "2024-03-14T12:00:00.000Z  2024-03-14T12:05:00.000Z  Hall 3, Pump 7  sensor away, missed "
      "30: The sensor was lost.\n");
}

TEST_F(JournalWords, StayALineWhateverTheTextsHold) {
  ASSERT_EQ(Run({"archive", "journal", "--from", "2024-03-14T12:15:00Z", "--limit", "1"}),
            ExitCode::Success)
      << error.str();
  const std::string line = out.str();
  EXPECT_EQ(std::ranges::count(line, '\n'), 1) << line;
  EXPECT_EQ(line.find('\x1B'), std::string::npos) << line;
  EXPECT_EQ(line.find('\r'), std::string::npos) << line;
  EXPECT_EQ(line.find('\xFF'), std::string::npos) << line;
  EXPECT_EQ(Listed({"--bench", "b'; drop table journal; --"}), "03 ");
  EXPECT_EQ(Listed({}), "03 02 01 ");
}

TEST_F(JournalWords, AreSearched) {
  EXPECT_EQ(Listed({"--open"}), "02 ");
  EXPECT_EQ(Listed({"--sensor", "Pump 7"}), "01 ");
  EXPECT_EQ(Listed({"--bench", "Hall 3", "--limit", "1"}), "02 ");
  // What still lasts is of every time after its beginning.
  EXPECT_EQ(Listed({"--from", "2024-03-14T12:31:00Z"}), "02 ");
  EXPECT_EQ(Listed({"--until", "2024-03-14T12:10:00Z"}), "01 ");
  EXPECT_EQ(Listed({"--bench", "none"}), "");
}

TEST_F(JournalWords, TellAllMembersAsJson) {
  ASSERT_EQ(Run({"--json", "archive", "journal", "--sensor", "Pump 7"}), ExitCode::Success);
  const json entry = json::parse(out.str()).at(0);
  EXPECT_EQ(entry["uid"], "01" + std::string(30, '0'));
  EXPECT_EQ(entry["kind"], "sensor away");
  EXPECT_EQ(entry["ended"], "2024-03-14T12:05:00.000Z");
  EXPECT_EQ(entry["missed"], 30);
  ASSERT_EQ(Run({"--json", "archive", "journal", "--open"}), ExitCode::Success);
  EXPECT_TRUE(json::parse(out.str()).at(0)["ended"].is_null());
}

TEST_F(JournalWords, ATimeThatIsNoneIsAMistake) {
  EXPECT_EQ(Run({"archive", "journal", "--from", "yesterday"}), ExitCode::Usage);
  EXPECT_THAT(error.str(), HasSubstr("--from"));
}

TEST_F(JournalWords, AreRescuedOnceHoweverOftenThatIsDone) {
  const std::string into = (folder_.path() / "rescued.db").string();
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(Run({"archive", "rescue", "--into", into}), ExitCode::Success) << error.str();
  }
  usualArchive = {into};
  EXPECT_EQ(Listed({}), "03 02 01 ");
}

TEST_F(JournalWords, AJournalThatCannotBeReadIsToldAtItsRescue) {
  archive::Open(usualArchive).Connection().Run("drop table journal");
  const std::string into = (folder_.path() / "rescued.db").string();
  EXPECT_NE(Run({"archive", "rescue", "--into", into}), ExitCode::Success);
  EXPECT_THAT(out.str() + error.str(), HasSubstr("journal"));
}

}  // namespace
}  // namespace kestrel
