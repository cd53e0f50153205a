// Arguments, exit codes and connections of the command-line program.
// SPDX-License-Identifier: MIT
#include "cli/program.h"

#include "alarms/alarm_file.h"
#include "program_bench.h"

namespace kestrel {
namespace {

using Json = nlohmann::json;
using testing::Test;

class Program : public ProgramBench {};

TEST_F(Program, HelpNamesEveryCommandAndTheExitCodes) {
  EXPECT_EQ(Run({"--help"}), ExitCode::Success);
  for (const char* word :
       {"capture", "registers", "bands", "command", "record", "status", "adapters", "--simulate",
        "--adapter", "--parallel", "--port-device", "--json", "130"}) {
    EXPECT_NE(out.str().find(word), std::string::npos) << word;
  }
  EXPECT_EQ(error.str(), "");
}

TEST_F(Program, AWrongCommandLineIsRefusedBeforeAnythingIsDone) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {},
           {"fly"},
           {"capture", "--averages", "256"},
           {"capture", "--averages", "many"},
           {"capture", "--mode", "reserved"},
           {"capture", "--option", "4"},
           {"capture", "--count", "0"},
           {"capture", "--name", "pump"},
           {"record", "16"},
           {"command", "-1"},
           {"registers"},
           {"bands", "load"},
           {"--adapter", "Ezusb-4", "status"},
           {"--parallel", "xyz", "status"},
           {"--parallel", "10000", "status"},
           {"--port-device", "/dev/parport1", "--adapter", "Ezusb-1", "status"},
           {"--simulate", "--port-device", "/dev/parport1", "status"},
           {"--scenario", "none", "status"}}) {
    EXPECT_EQ(Run(arguments), ExitCode::Usage) << testing::PrintToString(arguments);
    EXPECT_NE(error.str(), "");
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(portDevice, "");
  }
}

TEST_F(Program, AWordThatIsNoCommandIsNamedBesideThoseThatAre) {
  EXPECT_EQ(Run({"--json", "fly", "--high"}), ExitCode::Usage);
  EXPECT_NE(error.str().find("\"fly\" is not a command"), std::string::npos) << error.str();
  EXPECT_NE(error.str().find("capture, registers, bands"), std::string::npos) << error.str();
  EXPECT_EQ(Run({"registers", "paint"}), ExitCode::Usage);
  EXPECT_NE(error.str().find("registers: \"paint\" is not a command"), std::string::npos)
      << error.str();
  EXPECT_EQ(Run({"registers"}), ExitCode::Usage);
  EXPECT_NE(error.str(), "");
}

TEST_F(Program, WithoutHardwareItSaysSoAndEndsWithACodeOfItsOwn) {
  EXPECT_EQ(Run({"status"}), ExitCode::NoSensor);
  EXPECT_EQ(error.str(),
            "No USB Buffers Found, Please Verify Setup.\n"
            "Without hardware, --simulate uses the simulated sensor.\n");
  EXPECT_EQ(Run({"adapters"}), ExitCode::NoSensor);
  EXPECT_EQ(Run({"--json", "adapters"}), ExitCode::NoSensor);
  EXPECT_EQ(Json::parse(out.str()), Json::array());
}

TEST_F(Program, AnAdapterThatIsNotThereIsNamed) {
  EXPECT_EQ(Simulate({"--adapter", "Ezusb-2", "status"}), ExitCode::NoSensor);
  EXPECT_EQ(error.str(), "There is no adapter Ezusb-2.\n");
  EXPECT_EQ(Simulate({"--adapter", "0", "status"}), ExitCode::Success);
}

TEST_F(Program, ReadsARegisterByItsNameInAnyCase) {
  const Json json = SimulateJson({"registers", "read", "prod_id"});
  EXPECT_EQ(json["name"], "PROD_ID");
  EXPECT_EQ(json["value"], 31407);
  EXPECT_EQ(json["hex"], "7AAF");
  EXPECT_EQ(json["address"], 0x56);
}

TEST_F(Program, WritesARegisterAndReadsItBack) {
  EXPECT_EQ(SimulateJson({"registers", "write", "FFT_AVG", "0x1F"})["value"], 31);
  EXPECT_EQ(SimulateJson({"registers", "write", "X_NULL", "65535"})["value"], -1);
}

TEST_F(Program, TakesAPortsAddressWithAndWithoutItsPrefix) {
  for (const char* address : {"378", "0x378", "0X7fff", "E000", "0xFFF8", " 03BC ", "0"}) {
    EXPECT_EQ(Run({"--parallel", address, "adapters"}), ExitCode::NoSensor) << address;
    EXPECT_EQ(error.str(), "No USB adapter was found.\n");
  }
}

TEST_F(Program, RefusesWhatIsNoRegisterOrNoWord) {
  EXPECT_EQ(Simulate({"registers", "read", "COMMAND"}), ExitCode::Usage);
  EXPECT_EQ(
      error.str(),
      "registers read: there is no readable register \"COMMAND\"; \"registers list\" shows all.\n");
  EXPECT_EQ(Simulate({"registers", "read", "NONE"}), ExitCode::Usage);
  EXPECT_EQ(
      error.str(),
      "registers read: there is no readable register \"NONE\"; \"registers list\" shows all.\n");
  EXPECT_EQ(Simulate({"registers", "write", "PROD_ID", "1"}), ExitCode::Usage);
  EXPECT_EQ(error.str(),
            "registers write: there is no writable register \"PROD_ID\"; \"registers list\" shows "
            "all.\n");
  for (const char* value : {"0x10000", "65536", "1.5", "seven", ""}) {
    EXPECT_EQ(Simulate({"registers", "write", "FFT_AVG", value}), ExitCode::Usage) << value;
  }
}

TEST_F(Program, ListsEveryReadableRegister) {
  const Json json = SimulateJson({"registers", "list"});
  EXPECT_EQ(json.size(), 49U);
  EXPECT_EQ(json.front()["name"], "ENDURANCE");
  EXPECT_EQ(json.back()["name"], "REC_INFO");
}

TEST_F(Program, DumpsTheRegistersIntoAFolderOfChoice) {
  EXPECT_EQ(Simulate({"registers", "dump", "--out", "/data"}), ExitCode::Success);
  EXPECT_EQ(out.str(), "/data/Registers_LOG.txt\n");
  EXPECT_NE(files.contents.at("/data/Registers_LOG.txt").find("PROD_ID     \t56\t7AAF"),
            std::string::npos);
}

TEST_F(Program, ReportsTheStatus) {
  const Json json = SimulateJson({"status"});
  EXPECT_EQ(json["status"].size(), 15U);
  EXPECT_EQ(json["status"]["Data Ready"], "OK");
  EXPECT_NEAR(json["supply_v"], 3.3, 0.01);
}

TEST_F(Program, SendsAFunction) {
  EXPECT_EQ(SimulateJson({"command", "4"})["sent"], 4);
}

TEST_F(Program, ListsTheAdapters) {
  // The search without a sensor goes to the simulated one too.
  const Json json = SimulateJson({"adapters"});
  ASSERT_EQ(json.size(), 1U);
  EXPECT_EQ(json[0]["name"], "Ezusb-0");
}

TEST_F(Program, BandsGoFromAFileToTheSensor) {
  BandTable table;
  table(0, 3, 2) = 40;
  table(1, 3, 2) = 52;
  table(Alarm1Field(Axis::Y), 3, 2) = 120;
  files.contents["/data/AlarmSpectrum_pump.csv"] = AlarmFileText(table);
  const Json loaded = SimulateJson({"bands", "load", "/data/AlarmSpectrum_pump.csv"});
  ASSERT_EQ(loaded.size(), 24U);
  EXPECT_EQ(loaded[14]["option"], 2);
  EXPECT_EQ(loaded[14]["band"], 3);
  EXPECT_EQ(loaded[14]["f_low"], 40);
  EXPECT_EQ(loaded[14]["alarm1_y"], 120);
  EXPECT_EQ(Simulate({"bands", "write", "/data/AlarmSpectrum_pump.csv"}), ExitCode::Success);
  EXPECT_EQ(error.str(), "");
}

TEST_F(Program, TheSensorsBandsGoIntoAFile) {
  EXPECT_EQ(Simulate({"bands", "save", "/data/AlarmSpectrum_now.csv"}), ExitCode::Success);
  EXPECT_EQ(files.contents.at("/data/AlarmSpectrum_now.csv"), AlarmFileText(BandTable{}));
  EXPECT_EQ(Simulate({"bands", "save", "/data/other.csv"}), ExitCode::Usage);
  EXPECT_EQ(SimulateJson({"bands", "read"}).size(), 24U);
}

TEST_F(Program, ABadAlarmFileIsNamedWithLineAndValueAndReachesNoSensor) {
  files.contents["/data/AlarmSpectrum_bad.csv"] =
      AlarmFileText(BandTable{}) + "9,1,0,0,0,0,0,0,0,0\r\n";
  EXPECT_EQ(Simulate({"bands", "write", "/data/AlarmSpectrum_bad.csv"}), ExitCode::Failure);
  EXPECT_NE(error.str().find("/data/AlarmSpectrum_bad.csv, line 26"), std::string::npos)
      << error.str();
  EXPECT_NE(error.str().find('9'), std::string::npos);
  EXPECT_EQ(Simulate({"bands", "load", "/data/AlarmSpectrum_none.csv"}), ExitCode::Failure);
}

TEST_F(Program, AFileWithoutANameIsRefused) {
  for (const char* word : {"load", "save", "write"}) {
    EXPECT_EQ(Simulate({"bands", word, ""}), ExitCode::Usage) << word;
    EXPECT_NE(error.str(), "");
  }
}

TEST_F(Program, ANameThatIsNoTextIsReportedInJson) {
  EXPECT_EQ(Simulate({"--json", "bands", "save", "/data/AlarmSpectrum_\xFF.csv"}),
            ExitCode::Success);
  EXPECT_EQ(Json::parse(out.str())["file"], "/data/AlarmSpectrum_\uFFFD.csv");
  EXPECT_TRUE(files.contents.contains("/data/AlarmSpectrum_\xFF.csv"));
}

TEST_F(Program, AnErrorOfTheSystemsFilesIsAFailureWithItsReason) {
  class FailingFiles : public MemoryFiles {
    std::optional<std::string> Read(const std::filesystem::path& file, std::size_t) override {
      throw std::filesystem::filesystem_error("gone", file, std::error_code());
    }
  } failing;
  EXPECT_EQ(RunProgram({"--simulate", "bands", "load", "/data/AlarmSpectrum_pump.csv"},
                       {.clock = clock,
                        .files = failing,
                        .locale = locale,
                        .hardware = {&usb, &port, &service},
                        .interrupted = interrupted,
                        .out = out,
                        .error = error}),
            ExitCode::Failure);
  EXPECT_NE(error.str().find("gone"), std::string::npos);
}

}  // namespace
}  // namespace kestrel
