// Thresholds from kept records on the command line: what is printed, saved, written and refused.
// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <fstream>
#include <random>
#include <regex>

#include "alarms/alarm_file.h"
#include "archive/place.h"
#include "baseline/workbench.h"
#include "cli/golden_file.h"
#include "cli/program_bench.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Words = std::vector<std::string>;

class BaselineCommands : public ProgramBench {
 protected:
  BaselineCommands() { usualArchive = {(folder_.path() / "archive.db").string()}; }

  // Noise of fixed seed; the bad ones have a line in bin 70 of Z.
  void Fill(int good, int bad, int range = 3) {
    archive::Archive archive = archive::Open(usualArchive);
    std::mt19937 random(4);
    std::vector<archive::NewRecord> records;
    for (int i = 0; i < good + bad; ++i) {
      archive::NewRecord made{.uid = archive::NewUid(), .program = "0.1.0", .bench = "bench 1"};
      Record& record = made.record;
      record.settings = SettingsFromWords(1 << 12 | range << 10 | 4, 0);
      record.scaledRange = record.settings.range;
      record.lsbWeight = LsbWeightOf(record.scaledRange, RecordKind::Spectrum);
      record.time = std::chrono::system_clock::from_time_t(1'790'000'000 + 3600LL * i);
      for (const Axis axis : kAxes) {
        for (int bin = 0; bin <= kFftWidth; ++bin) {
          const bool line = i >= good && axis == Axis::Z && bin == 70;
          record.Of(axis).raw(bin) = 200 + static_cast<int>(random() % 50) + (line ? 250 : 0);
        }
      }
      made.remarks = {.machine = "Pump 3", .tags = {i < good ? "good" : "bad"}};
      records.push_back(std::move(made));
    }
    archive.KeepAll(records);
  }
  ExitCode Baseline(Words more, Words before = {}) {
    before.emplace_back("baseline");
    before.insert(before.end(), more.begin(), more.end());
    return Run(before);
  }
  json BaselineJson(Words more, Words before = {}) {
    before.emplace_back("--json");
    EXPECT_EQ(Baseline(std::move(more), std::move(before)), ExitCode::Success) << error.str();
    return json::parse(out.str());
  }
  static const json& Cell(const json& all, int band, const char* axis) {
    for (const json& cell : all["bands"]) {
      if (cell["band"] == band && cell["axis"] == axis) return cell;
    }
    throw std::runtime_error("no such band");
  }
  std::string Saved(const std::string& name) const {
    for (const auto& [path, content] : files.contents) {
      if (path.filename() == name) return content;
    }
    return {};
  }
  static BandTable FileTable() {
    BandTable table;
    for (int band = 1; band <= 3; ++band) {
      table(kFLowField, band, 0) = 40 * band - 30;
      table(kFHighField, band, 0) = 40 * band;
      for (const Axis axis : kAxes) {
        table(Alarm1Field(axis), band, 0) = 300;
        table(Alarm2Field(axis), band, 0) = 400;
      }
    }
    table(kFLowField, 4, 2) = 77;
    table(kFHighField, 4, 2) = 99;
    return table;
  }
  const Words sets{"--good-tag", "good", "--bad-tag", "bad"};
  Words With(const Words& more) const {
    Words words = sets;
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
  TemporaryFolder folder_;
};

TEST_F(BaselineCommands, PrintWhatTheEvidenceSaysToTheLetter) {
  Fill(60, 8);
  files.contents["/data/AlarmSpectrum_pump.csv"] = AlarmFileText(FileTable());
  ASSERT_EQ(Baseline(With({"--bands", "/data/AlarmSpectrum_pump.csv"})), ExitCode::Success)
      << error.str();
  EXPECT_EQ(error.str(), "");
  std::string text = out.str();
  const auto place = text.find(usualArchive.text);
  ASSERT_NE(place, std::string::npos);
  text.replace(place, usualArchive.text.size(), "ARCHIVE");
  text = std::regex_replace(text, std::regex("20..-..-..T..:.. UTC"), "NOW");
  CompareWithGolden("baseline", text);
}

TEST_F(BaselineCommands, SaveAnAlarmFileThatHoldsTheProposalsAndTheOtherOptionsBands) {
  Fill(60, 8);
  files.contents["/data/AlarmSpectrum_pump.csv"] = AlarmFileText(FileTable());
  const json all = BaselineJson(
      With({"--bands", "/data/AlarmSpectrum_pump.csv", "--save", "/data/AlarmSpectrum_new.csv"}));
  EXPECT_EQ(all["sets"]["good"], 60);
  EXPECT_EQ(all["sets"]["bad"], 8);
  EXPECT_EQ(all["misses"]["count"], 0);
  EXPECT_EQ(Cell(all, 2, "Z")["warnings"]["caught"]["count"], 8);
  EXPECT_EQ(Cell(all, 2, "Z")["warning"]["code_now"], 300);
  EXPECT_EQ(Cell(all, 4, "X")["refusal"], "The band is not in use.");
  BandTable saved;
  EXPECT_EQ(ReadAlarmFileText(Saved("AlarmSpectrum_new.csv"), saved), 24);
  BandTable wanted = FileTable();
  for (int band = 1; band <= 3; ++band) {
    for (const Axis axis : kAxes) {
      const json& cell = Cell(all, band, std::string(1, Letter(axis)).c_str());
      wanted(Alarm1Field(axis), band, 0) = cell["warning"]["code"];
      wanted(Alarm2Field(axis), band, 0) = cell["fault"]["code"];
    }
  }
  EXPECT_EQ(saved, wanted);
  EXPECT_NE(saved, FileTable());
}

TEST_F(BaselineCommands, WithoutBandsSixAdjoiningOnesAreTakenAndThatIsSaid) {
  Fill(10, 0);
  const json all = BaselineJson({"--good-tag", "good"});
  EXPECT_THAT(error.str(), HasSubstr("No bands of option 0 are known: six that adjoin are taken."));
  EXPECT_EQ(Cell(all, 1, "X")["f_low"], 2);
  EXPECT_EQ(Cell(all, 6, "X")["f_high"], 255);
}

TEST_F(BaselineCommands, RuleAndJudgementAreThoseThatAreTold) {
  Fill(60, 8);
  const auto warning = [&](const Words& more) {
    return Cell(BaselineJson(With(more)), 5, "Z")["warning"]["code"].get<int>();
  };
  EXPECT_LT(warning({"--sigma", "1", "--at-least", "0"}), warning({"--sigma", "6"}));
  EXPECT_LT(warning({"--sigma", "0", "--at-least", "1"}),
            warning({"--sigma", "0", "--at-least", "6"}));
  const json limit = BaselineJson(With(
      {"--percentile", "95", "--m", "2", "--n", "3", "--hysteresis", "0.5", "--fault-above", "6"}));
  EXPECT_THAT(limit["rule"].get<std::string>(), StartsWith("limit for 95 % of records"));
  EXPECT_EQ(limit["judgement"], "2 of 3 records, hysteresis 0.5 dB, as this program judges them");
  EXPECT_EQ(Cell(limit, 5, "Z")["warnings"]["caught"]["count"], 7) << "the second on";
}

TEST_F(BaselineCommands, ThePresentThresholdsAreReplayedWhereThatIsAskedFor) {
  Fill(60, 8);
  files.contents["/data/AlarmSpectrum_pump.csv"] = AlarmFileText(FileTable());
  const json all = BaselineJson(With({"--bands", "/data/AlarmSpectrum_pump.csv", "--present"}));
  EXPECT_EQ(Cell(all, 2, "Z")["warning"]["code"], 300);
  EXPECT_EQ(all["false_alarms"]["count"], 0);
  EXPECT_EQ(all["misses"]["count"], 0);
}

TEST_F(BaselineCommands, EvidenceIsSavedAsTextAndAsCsv) {
  Fill(10, 2);
  EXPECT_EQ(Baseline(With({"--evidence", "/data/e.txt"})), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr(Saved("e.txt")));
  EXPECT_EQ(Baseline(With({"--evidence", "/data/e.csv"})), ExitCode::Success);
  EXPECT_THAT(Saved("e.csv"), HasSubstr("\r\nknown good,good,10,all 10,"));
}

TEST_F(BaselineCommands, AreWrittenIntoTheSensorWhereItsRangeIsThatOfTheRecords) {
  Fill(60, 8, 1);
  EXPECT_EQ(Baseline(With({"--write"}), {"--simulate", "--json"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("The thresholds are codes of the range 0 to 5 g, and the "
                                     "sensor is set to another"));
  EXPECT_THAT(error.str(), HasSubstr("nothing was written"));
}

TEST_F(BaselineCommands, SensorsBandsAreTheirBaseAndAreWrittenBack) {
  ASSERT_EQ(Simulate({"--scenario", "bearing-fault", "capture", "--averages", "1", "--count", "3",
                      "--tag", "good"}),
            ExitCode::Success);
  const json all = BaselineJson({"--good-tag", "good", "--write"},
                                {"--simulate", "--scenario", "bearing-fault"});
  EXPECT_THAT(all["message"].get<std::string>(), HasSubstr("ritten"));
  int replaced = 0;
  for (const json& cell : all["bands"]) {
    replaced += cell.contains("warning") && cell["warning"]["code_now"] > 0 ? 1 : 0;
  }
  EXPECT_GT(replaced, 0) << "the sensor's own bands are what it begins with";
}

TEST_F(BaselineCommands, WhatCannotBeIsRefusedInPlainWords) {
  Fill(20, 2);
  const auto refusal = [&](const Words& words, ExitCode end) {
    EXPECT_EQ(Baseline(words), end);
    return error.str();
  };
  EXPECT_THAT(refusal({}, ExitCode::Failure), HasSubstr("known to be good: --good-tag"));
  EXPECT_THAT(refusal({"--good-tag", "none"}, ExitCode::Failure),
              HasSubstr("No record is left that is known to be good."));
  EXPECT_THAT(refusal({"--good-tag", "good", "--range", "20"}, ExitCode::Failure),
              HasSubstr("20: Range 0 to 70 g, cannot be compared with 0 to 20 g."));
  EXPECT_THAT(refusal(With({"--percentile", "99"}), ExitCode::Failure),
              HasSubstr("Needs 299 good records, 279 more than are chosen."));
  EXPECT_THAT(refusal(With({"--percentile", "98"}), ExitCode::Usage), HasSubstr("98"));
  EXPECT_THAT(refusal(With({"--percentile", "95", "--sigma", "3"}), ExitCode::Usage),
              HasSubstr("--sigma"));
  EXPECT_THAT(refusal(With({"--m", "3", "--n", "2"}), ExitCode::Failure),
              HasSubstr("--m 3 is more than --n 2."));
  EXPECT_THAT(refusal(With({"--sigma", "nan"}), ExitCode::Usage), HasSubstr("\"nan\""));
  EXPECT_THAT(refusal(With({"--good-every", "2 moons"}), ExitCode::Usage),
              HasSubstr("is not a time like 90s, 30min, 2h or 1d"));
  EXPECT_THAT(refusal(With({"--good-from", "yesterday"}), ExitCode::Usage),
              HasSubstr("\"yesterday\" is not a time in UTC"));
  EXPECT_THAT(refusal(With({"--save", "/data/x.csv"}), ExitCode::Usage),
              HasSubstr("AlarmSpectrum_<name>.csv, not \"x.csv\""));
  EXPECT_THAT(refusal(With({"--evidence", "/data/x.pdf"}), ExitCode::Usage),
              HasSubstr("evidence is .csv or .txt"));
  EXPECT_THAT(
      refusal(With({"--level", "rms", "--save", "/data/AlarmSpectrum_a.csv"}), ExitCode::Usage),
      HasSubstr("neither saved nor written"));
  EXPECT_THAT(refusal(With({"--bands", "/data/AlarmSpectrum_none.csv"}), ExitCode::Failure),
              HasSubstr("AlarmSpectrum_none.csv cannot be read"));
  EXPECT_EQ(Saved("AlarmSpectrum_a.csv"), "");
}

TEST_F(BaselineCommands, RecordsAreThinnedAndChosenByTimeAndNumber) {
  Fill(24, 0);
  EXPECT_EQ(BaselineJson({"--good-tag", "good", "--good-every", "4h"})["sets"]["good"], 6);
  EXPECT_EQ(BaselineJson(
                {"--good-from", "2026-09-21T20:00", "--good-until", "2026-09-22"})["sets"]["good"],
            4);
  EXPECT_EQ(BaselineJson({"--good-id", "3", "4", "5"})["sets"]["good"], 3);
  const json none = BaselineJson({"--good-id", "3", "4", "99"});
  EXPECT_EQ(none["sets"]["left_out"][0]["ids"], json({99}));
}

TEST_F(BaselineCommands, CtrlCEndsTheReading) {
  Fill(10, 0);
  interrupted = [] { return true; };
  EXPECT_EQ(Baseline({"--good-tag", "good"}), ExitCode::Interrupted);
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace kestrel
