// A level of kept records over time, from the command line.
// SPDX-License-Identifier: MIT
#include "cli/archive/archive_commands_bench.h"

namespace kestrel {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

TEST_F(ArchiveCommands, ATrendTellsALevelOverTime) {
  Capture({"--count", "3"});
  Capture({"--mode", "time"});
  const json list = RunJson({"archive", "list", "--kind", "spectrum"});
  const json trend = RunJson({"trend", "rms", "--axis", "Z"});
  EXPECT_EQ(trend["unit"], "g RMS");
  ASSERT_EQ(trend["series"].size(), 2U);
  const json& points = trend["series"][0]["points"];
  ASSERT_EQ(points.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(points[i]["id"], list[2 - i]["id"]);
    EXPECT_EQ(points[i]["time"], list[2 - i]["time"]);
    EXPECT_EQ(points[i]["value"], list[2 - i]["levels"]["Z"]["rms_g"]);
  }
  EXPECT_EQ(RunJson({"trend", "temperature"})["series"][0]["points"].size(), 4U);
  EXPECT_EQ(Run({"trend", "supply"}), ExitCode::Success);
  EXPECT_THAT(out.str(), testing::StartsWith("series\ttime (UTC)\tV\tid\talarm\n1\t"));
}

TEST_F(ArchiveCommands, ATrendOfThePeakNearAFrequencyIsThatOfTheRecords) {
  Capture({"--count", "3"});
  const json all = RunJson({"trend", "peak", "--axis", "Z", "--near", "8200", "--within", "400"});
  ASSERT_FALSE(all["series"].empty());
  EXPECT_EQ(all["unit"], "g peak");
  const json one = RunJson({"trend", "peak", "--axis", "Z", "--near", "8200"});
  EXPECT_EQ(one["series"], all["series"]) << "82 Hz hold the same peak";
}

TEST_F(ArchiveCommands, ATrendOfABandLeavesOutWhatCannotCarryIt) {
  Capture();
  Capture({"--mode", "time"});
  const json trend = RunJson({"trend", "peak", "--axis", "Z", "--low", "2000", "--high", "9000"});
  EXPECT_EQ(trend["refused"], 1);
  EXPECT_THAT(error.str(), HasSubstr("1 record is left out: a time record has no bands"));
  EXPECT_GT(trend["series"][0]["points"][0]["value"].get<double>(), 0.1);
}

TEST_F(ArchiveCommands, ALevelThatCannotBeFollowedIsRefusedWithWhatWouldDo) {
  const auto refusal = [this](Words words) {
    words.insert(words.begin(), "trend");
    EXPECT_EQ(Run(words), ExitCode::Failure);
    return error.str();
  };
  EXPECT_EQ(refusal({"rms", "--low", "9", "--high", "9"}),
            "A band cannot go from 9 to 9 Hz; give a --low below the --high.\n");
  EXPECT_EQ(refusal({"supply", "--low", "1", "--high", "9"}),
            "A band has an RMS and a peak; leave out --low and --high for temperature and "
            "supply.\n");
  EXPECT_EQ(refusal({"rms", "--near", "8200"}),
            "Near a frequency only a peak can be followed; ask for peak, or leave out --near.\n");
  EXPECT_EQ(refusal({"peak", "--near", "8200", "--within", "0"}),
            "--within 0 Hz holds no peak; give a width above 0 Hz.\n");
}

TEST_F(ArchiveCommands, ATrendThatIsNotAskedForRightIsAMistakeOfTheLine) {
  EXPECT_EQ(Run({"trend", "noise"}), ExitCode::Usage);
  EXPECT_EQ(Run({"trend", "peak", "--within", "10"}), ExitCode::Usage);
  EXPECT_EQ(Run({"trend", "peak", "--near", "9", "--low", "1", "--high", "2"}), ExitCode::Usage);
  EXPECT_EQ(Run({"trend", "rms", "--low", "x", "--high", "9"}), ExitCode::Usage);
  EXPECT_THAT(error.str(), HasSubstr("\"x\" is not a frequency; give 0 to 1,000,000 Hz"));
}

}  // namespace
}  // namespace kestrel
