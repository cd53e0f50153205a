// Set-ups by the command line, on one simulated sensor that keeps what is written to it.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "cli/program_bench.h"
#include "setup/setup_file.h"
#include "simulator/simulated_hardware.h"

namespace kestrel {
namespace {

using testing::HasSubstr;

class SetupWords : public ProgramBench {
 protected:
  SetupWords() {
    driver = &hardware_.Adapter();
    setups = "/data/setups";
  }
  nlohmann::json RunJson(std::vector<std::string> arguments, ExitCode wanted) {
    arguments.insert(arguments.begin(), "--json");
    EXPECT_EQ(Run(arguments), wanted) << error.str();
    return nlohmann::json::parse(out.str());
  }

 private:
  SimulatedHardware hardware_{clock};
};

TEST_F(SetupWords, SavedChangedComparedRestoredAndEqualAgain) {
  ASSERT_EQ(Run({"setup", "save", "pump"}), ExitCode::Success) << error.str();
  EXPECT_EQ(out.str(), "/data/setups/pump.setup.json\n");
  ASSERT_EQ(Run({"setup", "diff", "pump"}), ExitCode::Success);
  EXPECT_EQ(out.str(), "Equal: the sensor holds all registers and bands of \"pump\".\n");
  ASSERT_EQ(Run({"registers", "write", "FFT_AVG", "31"}), ExitCode::Success);
  ASSERT_EQ(Run({"setup", "diff", "pump"}), ExitCode::Different);
  EXPECT_EQ(out.str(), "FFT_AVG: saved 8, now 31\n");
  const auto diff = RunJson({"setup", "diff", "pump"}, ExitCode::Different);
  EXPECT_FALSE(diff["equal"].get<bool>());
  EXPECT_EQ(diff["differences"][0]["place"], "FFT_AVG");
  ASSERT_EQ(Run({"setup", "restore", "pump"}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("Written and read back: FFT_AVG."));
  EXPECT_TRUE(RunJson({"setup", "diff", "pump"}, ExitCode::Success)["equal"].get<bool>());
  EXPECT_TRUE(RunJson({"setup", "restore", "pump"}, ExitCode::Success)["whole"].get<bool>());
}

TEST_F(SetupWords, ASetupIsListedShownHandedOnAndDeleted) {
  ASSERT_EQ(Run({"setup", "save", "pump"}), ExitCode::Success) << error.str();
  EXPECT_EQ(RunJson({"setup", "list"}, ExitCode::Success)[0]["name"], "pump");
  EXPECT_EQ(RunJson({"setup", "show", "pump"}, ExitCode::Success)["bands"].size(), 24U);
  ASSERT_EQ(Run({"setup", "show", "pump"}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("REC_CTRL: 0x1030: Windowing 1: Hanning [default]"));
  ASSERT_EQ(Run({"setup", "export", "pump", "/out/handed.json"}), ExitCode::Success);
  ASSERT_EQ(Run({"setup", "diff", "--file", "/out/handed.json"}), ExitCode::Success);
  ASSERT_EQ(Run({"setup", "import", "/out/handed.json", "--name", "other"}), ExitCode::Success);
  EXPECT_EQ(RunJson({"setup", "list"}, ExitCode::Success).size(), 2U);
  ASSERT_EQ(Run({"setup", "delete", "pump"}), ExitCode::Success);
  EXPECT_EQ(RunJson({"setup", "list"}, ExitCode::Success)[0]["name"], "other");
  ASSERT_EQ(Run({"setup", "save", "--file", "/out/new.setup.json"}), ExitCode::Success);
  EXPECT_THAT(files.contents["/out/new.setup.json"], HasSubstr("\"name\": \"new\""));
}

TEST_F(SetupWords, NothingIsReplacedUnasked) {
  ASSERT_EQ(Run({"setup", "save", "pump"}), ExitCode::Success);
  const std::string first = files.contents["/data/setups/pump.setup.json"];
  ASSERT_EQ(Run({"setup", "export", "pump", "/out/pump.json"}), ExitCode::Success);
  ASSERT_EQ(Run({"registers", "write", "FFT_AVG", "31"}), ExitCode::Success);
  for (const std::vector<std::string>& words : {std::vector<std::string>{"setup", "save", "pump"},
                                                {"setup", "import", "/out/pump.json"},
                                                {"setup", "export", "pump", "/out/pump.json"},
                                                {"setup", "save", "--file", "/out/pump.json"}}) {
    EXPECT_EQ(Run(words), ExitCode::Failure) << words[1];
    EXPECT_THAT(error.str(), HasSubstr("--replace replaces it."));
    EXPECT_EQ(files.contents["/data/setups/pump.setup.json"], first);
    EXPECT_EQ(files.contents["/out/pump.json"], first);
  }
  ASSERT_EQ(Run({"setup", "save", "pump", "--replace"}), ExitCode::Success);
  EXPECT_NE(files.contents["/data/setups/pump.setup.json"], first);
}

TEST_F(SetupWords, BadFilesAndNamesAreTold) {
  files.contents["/out/bad.json"] = "{\n\"format\": \"kestrel setup\"";
  EXPECT_EQ(Run({"setup", "restore", "--file", "/out/bad.json"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "/out/bad.json, line 2: the file ends in the middle of the set-up\n");
  EXPECT_EQ(Run({"setup", "import", "/out/none.json"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "/out/none.json: the file cannot be read\n");
  EXPECT_EQ(Run({"setup", "delete", "none"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "There is no set-up \"none\" in /data/setups.\n");
  EXPECT_EQ(Run({"setup", "save", "a/b"}), ExitCode::Failure);
  EXPECT_EQ(error.str(),
            "The name \"a/b\" cannot be used: the character / cannot stand in a file name.\n");
  EXPECT_EQ(Run({"setup", "diff"}), ExitCode::Usage);
  EXPECT_EQ(error.str(), "setup diff: give either the name of a set-up, or a file with --file.\n");
  EXPECT_EQ(Run({"setup", "diff", "pump", "--file", "/out/bad.json"}), ExitCode::Usage);
}

TEST_F(SetupWords, WithoutASensorNothingIsSaved) {
  driver = &usb;
  EXPECT_EQ(Run({"setup", "save", "pump"}), ExitCode::NoSensor);
  EXPECT_TRUE(files.contents.empty());
  EXPECT_EQ(Run({"setup", "list"}), ExitCode::Success) << "needs none";
}

}  // namespace
}  // namespace kestrel
