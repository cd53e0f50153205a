// The capture command: settings, reports, files.
// SPDX-License-Identifier: MIT
#include "cli/capture_command.h"

#include "program_bench.h"
#include "simulator/simulated_hardware.h"

namespace kestrel {
namespace {

using Json = nlohmann::json;

class Capture : public ProgramBench {
 protected:
  Capture() { files.contents["/data/readme"] = ""; }
};

TEST_F(Capture, ReportsThePeakOfEveryAxis) {
  const Json json = SimulateJson({"capture", "--averages", "2"});
  EXPECT_EQ(json["type"], "spectrum");
  EXPECT_EQ(json["averages"], 2);
  for (const char* axis : {"X", "Y", "Z"}) {
    EXPECT_NEAR(json["axes"][axis]["peak_g"], 0.6, 0.1) << axis;
    EXPECT_EQ(json["axes"][axis]["data_g"].size(), 256U);
  }
  EXPECT_FALSE(json["stopped"]);
  EXPECT_FALSE(json.contains("file"));
}

TEST_F(Capture, TakesTheSettingsGivenAndReportsEveryPointOnRequest) {
  const Json json = SimulateJson({"capture", "--mode", "time", "--range", "5", "--window",
                                  "flattop", "--option", "1", "--data"});
  EXPECT_EQ(json["type"], "time");
  EXPECT_EQ(json["sample_rate_option"], 1);
  EXPECT_EQ(json["axes"]["Z"]["data_g"].size(), 512U);
}

TEST_F(Capture, InBlocksItReportsTheSameStoredRecord) {
  SimulatedHardware hardware{clock};
  driver = &hardware.Adapter();
  for (const char* mode : {"manual", "time"}) {
    ASSERT_EQ(Run({"registers", "write", "REC_CTRL", "0x1038"}), ExitCode::Success);
    ASSERT_EQ(Run({"capture", "--mode", mode, "--averages", "1", "--fast"}), ExitCode::Success)
        << error.str();
    EXPECT_EQ(error.str(), "");
  }
  for (const std::vector<std::string>& record :
       {std::vector<std::string>{"--json", "record", "0"}, {"--json", "record", "1", "--time"}}) {
    ASSERT_EQ(Run(record), ExitCode::Success) << error.str();
    const Json singly = Json::parse(out.str());
    auto fast = record;
    fast.emplace_back("--fast");
    ASSERT_EQ(Run(fast), ExitCode::Success) << error.str();
    EXPECT_EQ(error.str(), "");
    EXPECT_EQ(Json::parse(out.str())["axes"], singly["axes"]);
  }
}

TEST_F(Capture, WritesANumberedFileOfEachAndNeverOverAnEarlierOne) {
  files.contents["/data/pump_6.csv"] = "earlier";
  EXPECT_EQ(
      Simulate({"capture", "--averages", "1", "--count", "2", "--out", "/data", "--name", "pump"}),
      ExitCode::Success)
      << error.str();
  EXPECT_EQ(files.contents.at("/data/pump_6.csv"), "earlier");
  EXPECT_TRUE(files.contents.contains("/data/pump_7.csv"));
  EXPECT_TRUE(files.contents.contains("/data/pump_8.csv"));
  EXPECT_NE(out.str().find("file /data/pump_8.csv"), std::string::npos);
}

TEST_F(Capture, ItsFileTellsTheAverages) {
  EXPECT_EQ(Simulate({"capture", "--averages", "12", "--out", "/data/./"}), ExitCode::Success);
  EXPECT_NE(files.contents.at("/data/Datalog_1.csv").find("AVG_Cnt,12\r\n"), std::string::npos);
  EXPECT_NE(out.str().find("file /data/Datalog_1.csv"), std::string::npos) << out.str();
}

TEST_F(Capture, AFolderThatCannotBeWrittenIsNamed) {
  files.readOnly.insert("/data");
  EXPECT_EQ(Simulate({"capture", "--out", "/data"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "--out: the folder /data cannot be written.\n");
}

TEST_F(Capture, CapturesKeepTheirInterval) {
  const auto start = clock.Monotonic();
  EXPECT_EQ(Simulate({"capture", "--averages", "1", "--count", "3", "--interval", "20"}),
            ExitCode::Success);
  EXPECT_GE(clock.Monotonic() - start, std::chrono::seconds{40});
}

TEST_F(Capture, AnIntervalThatIsNoTimeIsRefused) {
  for (const char* interval : {"nan", "inf", "-1", "86401", "0x10", "soon", ""}) {
    EXPECT_EQ(Simulate({"capture", "--count", "2", "--interval", interval}), ExitCode::Usage)
        << interval;
    EXPECT_NE(error.str().find("not a number of seconds"), std::string::npos) << error.str();
  }
}

TEST_F(Capture, JsonHasPlainValuesAndTheMomentInUtc) {
  const Json json = SimulateJson({"capture", "--averages", "1", "--range", "20"});
  EXPECT_EQ(json["window"], "Hanning");
  EXPECT_EQ(json["range"], "0 to 20 g");
  const std::string time = json["time"];
  EXPECT_EQ(time.size(), std::string("2024-03-14T08:26:53.000Z").size());
  EXPECT_EQ(time.back(), 'Z');
}

TEST_F(Capture, ARecordIsScaledByTheRangeAtWhichItWasTaken) {
  SimulatedHardware hardware(clock);
  driver = &hardware.Adapter();
  // Hanning, option 0, 70 g, every record kept; then 1 g.
  ASSERT_EQ(Run({"registers", "write", "REC_CTRL", "0x1038"}), ExitCode::Success);
  ASSERT_EQ(Run({"--json", "capture", "--averages", "1"}), ExitCode::Success);
  const double captured = Json::parse(out.str())["axes"]["X"]["peak_g"];
  ASSERT_EQ(Run({"registers", "write", "REC_CTRL", "0x1008"}), ExitCode::Success);
  ASSERT_EQ(Run({"--json", "record", "0"}), ExitCode::Success) << error.str();
  const Json json = Json::parse(out.str());
  EXPECT_EQ(json["range"], "0 to 70 g");
  EXPECT_EQ(json["axes"]["X"]["peak_g"], captured);
  EXPECT_NEAR(captured, 0.6, 0.1);
}

// A capture of 11 s that is interrupted after a glance or two.
TEST_F(Capture, DataThatAreNotNewHaveAnExitCodeOfTheirOwnAndGoIntoNoFile) {
  int asked = 0;
  interrupted = [&] { return ++asked == 20; };
  const std::vector<std::string> arguments{"--json", "capture", "--averages", "255",
                                           "--out",  "/data",   "--name",     "pump"};
  EXPECT_EQ(Simulate(arguments), ExitCode::NotNew);
  EXPECT_EQ(Json::parse(out.str())["new"], false);
  EXPECT_NE(error.str().find("the data of the record before"), std::string::npos) << error.str();
  EXPECT_FALSE(files.contents.contains("/data/pump_1.csv"));
  asked = 0;
  std::vector<std::string> wanted = arguments;
  wanted.emplace_back("--old-data");
  EXPECT_EQ(Simulate(wanted), ExitCode::NotNew);
  EXPECT_EQ(Json::parse(out.str())["file"], "/data/pump_1.csv");
  EXPECT_TRUE(files.contents.contains("/data/pump_1.csv"));
}

TEST_F(Capture, ANumberOfCapturesThatIsNoneIsExplained) {
  for (const char* count : {"0", "-1", "1.5", "many", ""}) {
    EXPECT_EQ(Simulate({"capture", "--count", count}), ExitCode::Usage) << count;
    EXPECT_NE(error.str().find("is not a number of captures"), std::string::npos) << error.str();
  }
}

TEST_F(Capture, CtrlCEndsItAsStopDoes) {
  int asked = 0;
  interrupted = [&] { return ++asked == 20; };
  EXPECT_EQ(Simulate({"--json", "capture", "--averages", "255", "--count", "5"}), ExitCode::NotNew);
  const Json json = Json::parse(out.str());
  EXPECT_EQ(json["capture"], 1);
  EXPECT_TRUE(json["stopped"]);
  EXPECT_EQ(json["status"]["Recording Esc. Flag"], "FAIL") << "the sensor was told to stop";
}

TEST_F(Capture, ProgressGoesToATerminalOnly) {
  EXPECT_EQ(Simulate({"capture", "--averages", "1"}), ExitCode::Success);
  EXPECT_EQ(error.str(), "");
  showProgress = true;
  EXPECT_EQ(Simulate({"capture", "--averages", "1"}), ExitCode::Success);
  EXPECT_NE(error.str().find("Reading 50 %"), std::string::npos);
  EXPECT_EQ(out.str().find("Reading"), std::string::npos);
}

TEST_F(Capture, AnEmptySlotOfTheFlashReadsAsZeros) {
  const Json json = SimulateJson({"record", "3"});
  EXPECT_EQ(json["axes"]["X"]["peak_g"], 0);
  EXPECT_FALSE(json.contains("capture"));
}

}  // namespace
}  // namespace kestrel
