// One spectrum over all options from the command line: captured, kept, read again, exported.
// SPDX-License-Identifier: MIT
#include <cmath>

#include "cli/program_bench.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Words = std::vector<std::string>;

class WideCommands : public ProgramBench {
 protected:
  WideCommands() { usualArchive = {(folder_.path() / "archive.db").string()}; }

  json Wide(Words more = {}) {
    Words words{"--scenario", "broadband-machine", "wide", "--range", "1"};
    if (std::ranges::count(more, "--averages") == 0) more.insert(more.end(), {"--averages", "2"});
    words.insert(words.end(), more.begin(), more.end());
    return SimulateJson(words);
  }
  json RunJson(Words arguments) {
    arguments.insert(arguments.begin(), "--json");
    EXPECT_EQ(Run(arguments), ExitCode::Success) << error.str();
    return json::parse(out.str());
  }
  static std::string NameOf(const json& wide) { return wide["set"].get<std::string>(); }

  TemporaryFolder folder_;
};

TEST_F(WideCommands, GivesFrequencyDensityAndOptionOfEveryPointOfEveryAxis) {
  const json wide = Wide();
  EXPECT_EQ(wide["complete"], true);
  EXPECT_EQ(wide["missing"], json::array());
  ASSERT_EQ(wide["axes"].size(), 3U);
  for (const json& axis : wide["axes"]) {
    const std::size_t points = axis["frequency"].size();
    ASSERT_GT(points, 300U);
    ASSERT_EQ(axis["density"].size(), points);
    ASSERT_EQ(axis["options"].size(), points);
    EXPECT_NEAR(axis["frequency"].front(), 1.15, 0.01);
    EXPECT_NEAR(axis["frequency"].back(), 49899.3, 0.1);
    EXPECT_EQ(axis["options"].front(), 3);
    EXPECT_EQ(axis["options"].back(), 0);
    for (std::size_t i = 1; i < points; ++i) {
      ASSERT_GT(axis["frequency"][i], axis["frequency"][i - 1]);
      ASSERT_GE(axis["density"][i], 0);
    }
    ASSERT_EQ(axis["overlaps"].size(), 3U);
    EXPECT_EQ(axis["overlaps"][0]["options"], json({3, 2}));
    for (const json& overlap : axis["overlaps"]) {
      EXPECT_LT(std::fabs(overlap["disagreement_db"].get<double>()), 3);
    }
    EXPECT_EQ(axis["steady"], true);
    EXPECT_GT(axis["severity_10_to_1000_hz"]["velocity_mm_per_s_rms"], 0.1);
  }
  ASSERT_EQ(wide["overlaps"].size(), 9U);
  EXPECT_EQ(wide["overlaps"][0]["axis"], "X");
}

TEST_F(WideCommands, ItsRecordsAreKeptAndReadAgainTheyTellTheSame) {
  const json wide = Wide({"--machine", "Pump 3", "--note", "after the overhaul"});
  ASSERT_EQ(wide["records"].size(), 4U);
  const json kept = RunJson({"wide", "--from", NameOf(wide)});
  EXPECT_EQ(kept["axes"], wide["axes"]);
  EXPECT_EQ(kept["overlaps"], wide["overlaps"]);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(kept["records"][i]["uid"], wide["records"][i]["uid"]);
    EXPECT_EQ(kept["records"][i]["option"], 3 - static_cast<int>(i));
  }
  EXPECT_EQ(RunJson({"wide", "--from", "last"}), kept);
  const json records = RunJson({"archive", "list", "--wide", NameOf(wide)});
  ASSERT_EQ(records.size(), 4U);
  for (const json& record : records) {
    EXPECT_EQ(record["machine"], "Pump 3");
    EXPECT_EQ(record["wide"], wide["set"]);
  }
}

TEST_F(WideCommands, KeptOnesAreListedTheLatestFirst) {
  const json first = Wide();
  const json second = Wide({"--options", "1,2,3"});
  EXPECT_EQ(Simulate({"capture", "--averages", "1"}), ExitCode::Success);
  const json list = RunJson({"wide", "--list"});
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0]["set"], second["set"]);
  EXPECT_EQ(list[0]["options"], json({3, 2, 1}));
  EXPECT_EQ(list[0]["missing"], json::array());
  EXPECT_EQ(list[1]["set"], first["set"]);
  EXPECT_EQ(RunJson({"archive", "list", "--wide", "any"}).size(), 7U);
  EXPECT_EQ(Run({"wide", "--list"}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr(NameOf(second) + "\t"));
}

TEST_F(WideCommands, WhatIsMissingIsTold) {
  const json wide = Wide();
  const json ids = RunJson({"archive", "list", "--wide", NameOf(wide), "--option", "3"});
  ASSERT_EQ(ids.size(), 1U);
  ASSERT_EQ(Run({"archive", "delete", std::to_string(ids[0]["id"].get<int>())}), ExitCode::Success);
  const json kept = RunJson({"wide", "--from", NameOf(wide)});
  EXPECT_EQ(kept["complete"], false);
  EXPECT_EQ(kept["missing"], json::array({3}));
  EXPECT_EQ(kept["deleted"], json::array({3}));
  const json severity = kept["axes"]["X"]["severity_10_to_1000_hz"];
  EXPECT_EQ(severity["velocity_mm_per_s_rms"], nullptr);
  EXPECT_EQ(severity["missing"], json::array({3}));
  EXPECT_EQ(Run({"wide", "--from", NameOf(wide)}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("Deleted, and can be brought back: option 3."));
}

TEST_F(WideCommands, AllLinesAreListedOnceWithTheirBounds) {
  const json wide = Wide({"--averages", "20"});
  const json lines = wide["axes"]["Z"]["lines"];
  ASSERT_EQ(lines.size(), 4U);
  for (const double hz : {3.4, 61.0, 412.0, 8221.0}) {
    int found = 0;
    for (const json& line : lines) {
      const double away = std::fabs(line["frequency_hz"].get<double>() - hz);
      if (away > 0.01 * hz) continue;
      ++found;
      EXPECT_LT(away, 3 * line["frequency_uncertainty_hz"].get<double>()) << hz;
      EXPECT_EQ(line["unit"], "g peak");
    }
    EXPECT_EQ(found, 1) << hz;
  }
}

TEST_F(WideCommands, TellsOtherQuantitiesOfTheSamePoints) {
  const json wide = Wide();
  for (const auto& [word, unit] :
       std::map<std::string, std::string>{{"amplitude", "g peak"},
                                          {"velocity", "mm/s RMS"},
                                          {"displacement", "µm peak to peak"}}) {
    const json other = RunJson({"wide", "--from", "last", "--quantity", word});
    EXPECT_EQ(other["axes"]["Y"]["unit"], unit);
    ASSERT_EQ(other["axes"]["Y"]["values"].size(), wide["axes"]["Y"]["density"].size());
    EXPECT_EQ(other["axes"]["Y"]["density"], wide["axes"]["Y"]["density"]);
    EXPECT_EQ(other["axes"]["Y"]["lines"][0]["unit"], unit);
  }
}

TEST_F(WideCommands, AnUnsteadyMachineIsCalledSo) {
  EXPECT_EQ(Simulate({"--scenario", "unsteady-machine", "wide", "--averages", "4", "--range", "5"}),
            ExitCode::Success)
      << error.str();
  EXPECT_THAT(out.str(), HasSubstr("Not steady: X, options 3 and 2: "));
  EXPECT_THAT(out.str(), HasSubstr("(not steady)"));
  EXPECT_EQ(RunJson({"wide", "--from", "last", "--limit", "20"})["steady"], true);
}

TEST_F(WideCommands, TheTextSaysWhatThereIs) {
  (void)Wide({"--averages", "8"});
  EXPECT_EQ(Run({"wide", "--from", "last"}), ExitCode::Success);
  for (const char* part :
       {"Wide spectrum ", "8 averages", "option 3", "option 0", "overlaps: 3/2 ",
        "severity, 10 to 1000 Hz: ", "g peak, option 2", "The sensor averages magnitudes"}) {
    EXPECT_THAT(out.str(), HasSubstr(part));
  }
  EXPECT_EQ(Run({"wide", "--from", "last", "--data", "--lines", "0"}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("frequency, Hz\toption\tX, g²/Hz"));
  EXPECT_THAT(out.str(), Not(HasSubstr("g peak")));
}

TEST_F(WideCommands, TheRangeThatIsTooCoarseIsNamed) {
  EXPECT_EQ(Simulate({"--scenario", "broadband-machine", "wide", "--averages", "2"}),
            ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("of two steps of the magnitude word or less"));
}

TEST_F(WideCommands, TheCurveIsATable) {
  const json wide = Wide({"--csv", "/data/curve.csv"});
  const std::string table = files.contents.at("/data/curve.csv");
  EXPECT_THAT(table, HasSubstr("# wide spectrum: " + NameOf(wide)));
  EXPECT_THAT(table,
              HasSubstr("\"frequency, Hz\",option,\"X, g²/Hz\",\"Y, g²/Hz\",\"Z, g²/Hz\"\n"));
  const auto lines = std::ranges::count(table, '\n') - std::ranges::count(table, '#');
  EXPECT_EQ(lines, 1 + static_cast<int>(wide["axes"]["X"]["frequency"].size()));
}

TEST_F(WideCommands, ItsRecordsLeaveAsOneFileEachWithItsOwnRate) {
  (void)Wide();
  EXPECT_EQ(
      Run({"archive", "export", "--wide", "last", "--format", "json", "--out", "/data/wide.json"}),
      ExitCode::Success)
      << error.str();
  EXPECT_THAT(out.str(), HasSubstr("4 records"));
  EXPECT_EQ(
      Run({"archive", "export", "--wide", "last", "--format", "uff58", "--out", "/data/w.uff"}),
      ExitCode::Success)
      << error.str();
}

TEST_F(WideCommands, StopKeepsWhatIsComplete) {
  const auto start = clock.Monotonic();
  interrupted = [&, done = false]() mutable {
    if (done || clock.Monotonic() - start < std::chrono::seconds(60)) return false;
    return done = true;
  };
  EXPECT_EQ(Simulate({"--json", "wide", "--averages", "255"}), ExitCode::Interrupted);
  const json wide = json::parse(out.str());
  EXPECT_EQ(wide["complete"], false);
  EXPECT_EQ(wide["stopped"], true);
  interrupted = [] { return false; };
  const json kept = RunJson({"wide", "--from", "last"});
  EXPECT_EQ(kept["missing"], wide["missing"]);
  EXPECT_EQ(kept["axes"], wide["axes"]);
}

TEST_F(WideCommands, WhoeverWatchesSeesOptionCaptureAndTimeLeft) {
  showProgress = true;
  (void)Wide();
  EXPECT_THAT(error.str(), HasSubstr("Option 3, capture 4 of 4, 0:0"));
}

TEST_F(WideCommands, WhatCannotBeIsRefusedByName) {
  for (const auto& [words, text] : std::vector<std::pair<Words, std::string>>{
           {{"wide", "--options", "4"}, "4"},
           {{"wide", "--averages", "0"}, "0"},
           {{"wide", "--limit", "loud"}, "\"loud\" is not a limit in dB"},
           {{"wide", "--quantity", "noise"}, "noise"},
           {{"wide", "--from", "pump"}, "\"pump\" is neither the name of a wide spectrum"},
           {{"archive", "list", "--wide", "pump"}, "nor \"any\""},
           {{"archive", "export", "--format", "csv", "--out", "x"}, "give either numbers"}}) {
    EXPECT_EQ(Run(words), ExitCode::Usage) << text;
    EXPECT_THAT(error.str(), HasSubstr(text));
  }
  EXPECT_EQ(Simulate({"capture", "--averages", "1"}), ExitCode::Success);
  EXPECT_EQ(Run({"wide", "--from", "last"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "There is no wide spectrum in the archive.\n");
  EXPECT_EQ(Run({"wide", "--from", std::string(32, 'a')}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("There is no wide spectrum aaaa"));
}

}  // namespace
}  // namespace kestrel
