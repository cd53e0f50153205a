// Commands that write files, with a fault at every call of the disk.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/system_files.h"
#include "program_bench.h"
#include "support/environment.h"
#include "support/killed_child.h"
#include "support/random_records.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using archive::NewRecord;
using Kind = CallFault::Kind;

struct Writing {
  const char* name;
  std::vector<std::string> arguments;  // the folder stands for "FOLDER"
  const char* file;
};

const std::vector<Writing> kWritings{
    {"Capture", {"capture", "--averages", "1", "--out", "FOLDER"}, "Datalog_1.csv"},
    {"Dump", {"registers", "dump", "--out", "FOLDER"}, "Registers_LOG.txt"},
    {"Bands", {"bands", "save", "FOLDER/AlarmSpectrum_pump.csv"}, "AlarmSpectrum_pump.csv"},
    {"Export",
     {"archive", "export", "1", "--format", "uff58", "--out", "FOLDER/pump.uff"},
     "pump.uff"},
    {"Wide", {"wide", "--averages", "1", "--csv", "FOLDER/wide.csv"}, "wide.csv"},
    {"Setup", {"setup", "save", "pump", "--replace"}, "pump.setup.json"}};

class CliFileFaults : public ProgramBench, public testing::WithParamInterface<Writing> {
 protected:
  CliFileFaults() {
    environment_.Set("XDG_DOCUMENTS_DIR", documents_.path().string());
    if (std::string(GetParam().name) == "Export") KeepARecord();
  }

  // The first of an archive of the test's own.
  void KeepARecord() {
    archive_ = {(archiveFolder_.path() / "archive.db").string()};
    NewRecord record{.record = RandomRecords(1).Next(), .program = "1", .bench = "bench"};
    archive::Open(archive_).Keep(record);
  }

  ExitCode Write() {
    std::vector<std::string> arguments{"--simulate"};
    for (std::string argument : GetParam().arguments) {
      const std::size_t at = argument.find("FOLDER");
      if (at != std::string::npos) argument.replace(at, 6, folder_.path().string());
      arguments.push_back(argument);
    }
    ResetProgram();
    out.str("");
    error.str("");
    return RunProgram(arguments, {.clock = clock,
                                  .files = disk_,
                                  .locale = locale,
                                  .hardware = {&usb, &port, &service},
                                  .interrupted = interrupted,
                                  .out = out,
                                  .error = error,
                                  .showProgress = false,
                                  .usualArchive = archive_,
                                  .setups = folder_.path()});
  }

  void Empty() {
    for (const std::string& name : folder_.Names()) fs::remove(folder_.path() / name);
  }

  // The values of a capture differ, and with them the size.
  static long LinesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_TRUE(content.ends_with('\n'));
    return std::count(content.begin(), content.end(), '\n');
  }

  int CallsOfWriting() {
    Empty();
    const SystemCallFaults none;
    EXPECT_EQ(Write(), ExitCode::Success) << error.str();
    return static_cast<int>(none.Calls().size());
  }

  TemporaryFolder folder_;
  TemporaryFolder documents_;
  TemporaryFolder archiveFolder_;
  archive::Place archive_;
  Environment environment_;
  SystemFiles disk_;
};

TEST_P(CliFileFaults, AnErrorAtAnyCallIsOneMessageAndNoFile) {
  const int calls = CallsOfWriting();
  ASSERT_GE(calls, 6);
  const long lines = LinesOf(folder_.path() / GetParam().file);
  for (const int code : {ENOSPC, EACCES, EIO}) {
    int refused = 0;
    for (int k = 1; k <= calls; ++k) {
      SCOPED_TRACE(k);
      Empty();
      ExitCode end{};
      {
        const SystemCallFaults faults(k, {Kind::Fails, code});
        end = Write();
      }
      const std::string told = error.str();
      if (end == ExitCode::Success) {
        EXPECT_EQ(told, "");
        const fs::path file = folder_.path() / GetParam().file;
        const fs::path elsewhere = documents_.path() / GetParam().file;
        EXPECT_EQ(LinesOf(fs::exists(file) ? file : elsewhere), lines);
        fs::remove(elsewhere);
      } else {
        ++refused;
        EXPECT_EQ(end, ExitCode::Failure);
        EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
        EXPECT_NE(told.find(folder_.path().string()), std::string::npos) << told;
        EXPECT_TRUE(told.find(std::strerror(code)) != std::string::npos ||
                    told.find("cannot be written") != std::string::npos)
            << told;
        EXPECT_TRUE(folder_.Names().empty());
      }
    }
    EXPECT_GE(refused, 4);
  }
  EXPECT_TRUE(documents_.Names().empty());
  EXPECT_EQ(Write(), ExitCode::Success) << "the next time";
}

TEST_P(CliFileFaults, KilledAtAnyCallThereIsAWholeFileOrNone) {
  const int calls = CallsOfWriting();
  const long lines = LinesOf(folder_.path() / GetParam().file);
  for (const Kind kind : {Kind::KilledBefore, Kind::KilledAfter}) {
    for (int k = 1; k <= calls; ++k) {
      SCOPED_TRACE(k);
      Empty();
      EXPECT_TRUE(IsKilledDoing([&] {
        const SystemCallFaults faults(k, {kind, 0});
        Write();
      }));
      const fs::path file = folder_.path() / GetParam().file;
      EXPECT_TRUE(!fs::exists(file) || LinesOf(file) == lines);
    }
  }
  EXPECT_EQ(Write(), ExitCode::Success) << "with what is left over";
}

INSTANTIATE_TEST_SUITE_P(Commands, CliFileFaults, testing::ValuesIn(kWritings),
                         [](const auto& tested) { return tested.param.name; });

class CliFolder : public ProgramBench {};

TEST_F(CliFolder, ARegisterListDoesNotGoElsewhereThanItWasAskedFor) {
  files.readOnly.insert("/asked");
  EXPECT_EQ(Simulate({"registers", "dump", "--out", "/asked"}), ExitCode::Failure);
  EXPECT_NE(error.str().find("--out: the folder /asked cannot be written."), std::string::npos);
  EXPECT_TRUE(files.contents.empty());
}

}  // namespace
}  // namespace kestrel
