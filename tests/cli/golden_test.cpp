// What every subcommand prints and writes, to the letter: compared with the files in golden/.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "alarms/alarm_file.h"
#include "cli/golden_file.h"
#include "cli/program.h"
#include "record/utc_time.h"
#include "regmap/register_table.h"
#include "setup/setup_file.h"
#include "simulator/simulated_hardware.h"
#include "support/absent_hardware.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/reset_program.h"
#include "support/unused_hardware.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using Words = std::vector<std::string>;

struct Case {
  const char* name;  // of the golden file
  Words arguments;
  std::optional<milliseconds> interruptAt;  // when Ctrl-C is pressed, after the program's start
};

void PrintTo(const Case& wanted, std::ostream* out) {
  *out << wanted.name;
}

const Case kCases[] = {
    {"help", {"--help"}, {}},
    {"help_capture", {"capture", "--help"}, {}},
    {"help_record", {"record", "--help"}, {}},
    {"help_bands", {"bands", "--help"}, {}},
    {"help_registers", {"registers", "--help"}, {}},
    {"help_command", {"command", "--help"}, {}},
    {"help_setup", {"setup", "--help"}, {}},
    {"help_setup_restore", {"setup", "restore", "--help"}, {}},
    {"help_monitor", {"monitor", "--help"}, {}},
    {"help_wide", {"wide", "--help"}, {}},
    {"setup_save", {"--simulate", "--scenario", "bearing-fault", "setup", "save", "pump"}, {}},
    {"setup_diff", {"--simulate", "setup", "diff", "--file", "/data/pump.json"}, {}},
    {"setup_diff_json", {"--simulate", "--json", "setup", "diff", "--file", "/data/pump.json"}, {}},
    {"setup_restore", {"--simulate", "setup", "restore", "--file", "/data/pump.json"}, {}},
    {"setup_restore_json",
     {"--simulate", "--json", "setup", "restore", "--file", "/data/pump.json", "--flash"},
     {}},
    {"setup_show", {"setup", "show", "--file", "/data/pump.json"}, {}},
    {"version", {"--version"}, {}},
    {"nothing", {}, {}},
    {"unknown", {"fly"}, {}},
    {"unknown_bands", {"bands", "paint"}, {}},
    {"wrong_averages", {"capture", "--averages", "256"}, {}},
    {"wrong_count", {"capture", "--count", "0"}, {}},
    {"wrong_interval", {"capture", "--interval", "soon"}, {}},
    {"wrong_adapter", {"--adapter", "Ezusb-4", "status"}, {}},
    {"wrong_parallel", {"--parallel", "xyz", "status"}, {}},
    {"no_sensor", {"status"}, {}},
    {"no_adapter", {"--simulate", "--adapter", "Ezusb-2", "status"}, {}},
    {"capture", {"--simulate", "capture", "--averages", "2"}, {}},
    {"capture_json", {"--simulate", "--json", "capture", "--averages", "2"}, {}},
    {"capture_data", {"--simulate", "capture", "--averages", "1", "--data"}, {}},
    {"capture_data_json",
     {"--simulate", "--json", "capture", "--mode", "time", "--range", "5", "--data"},
     {}},
    {"capture_time", {"--simulate", "capture", "--mode", "time", "--range", "20"}, {}},
    {"capture_timer", {"--simulate", "capture", "--mode", "timer", "--averages", "1"}, {}},
    {"capture_series",
     {"--simulate", "capture", "--averages", "1", "--count", "3", "--interval", "20", "--out",
      "/data", "--name", "pump"},
     {}},
    {"capture_files_json",
     {"--simulate", "--json", "capture", "--window", "flattop", "--option", "1", "--out", "/data"},
     {}},
    {"capture_fault",
     {"--simulate", "--scenario", "overheating", "--json", "capture", "--window", "rectangular"},
     {}},
    {"capture_alarms",
     {"--simulate", "--scenario", "bearing-fault", "capture", "--averages", "1", "--count", "7"},
     {}},
    {"capture_alarms_json",
     {"--simulate", "--scenario", "bearing-fault", "--json", "capture", "--averages", "1",
      "--count", "4"},
     {}},
    {"capture_stopped", {"--simulate", "capture", "--averages", "255"}, milliseconds{1500}},
    {"capture_stopped_json",
     {"--simulate", "--json", "capture", "--averages", "255", "--out", "/data"},
     milliseconds{1500}},
    {"capture_pause",
     {"--simulate", "capture", "--averages", "1", "--count", "2", "--interval", "60"},
     milliseconds{30000}},
    {"record", {"--simulate", "record", "3"}, {}},
    {"record_json", {"--simulate", "--json", "record", "3", "--time"}, {}},
    {"numbers_peaks", {"--simulate", "capture", "--averages", "8", "--peaks", "4"}, {}},
    {"numbers_levels",
     {"--simulate", "--scenario", "bearing-fault", "capture", "--averages", "8", "--levels"},
     {}},
    {"numbers_json",
     {"--simulate", "--scenario", "bearing-fault", "--json", "capture", "--averages", "8",
      "--peaks", "2", "--levels"},
     {}},
    {"numbers_velocity",
     {"--simulate", "capture", "--averages", "8", "--peaks", "3", "--levels", "--quantity",
      "velocity"},
     {}},
    {"numbers_displacement",
     {"--simulate", "capture", "--averages", "8", "--option", "1", "--window", "flattop", "--peaks",
      "3", "--levels", "--quantity", "displacement"},
     {}},
    {"numbers_density",
     {"--simulate", "capture", "--averages", "8", "--peaks", "2", "--levels", "--quantity",
      "density"},
     {}},
    {"numbers_rms",
     {"--simulate", "--scenario", "calibrator", "capture", "--averages", "8", "--option", "2",
      "--peaks", "1", "--amplitude", "rms"},
     {}},
    {"numbers_time", {"--simulate", "capture", "--mode", "time", "--peaks", "2", "--levels"}, {}},
    {"numbers_time_json",
     {"--simulate", "--json", "capture", "--mode", "time", "--peaks", "1", "--levels"},
     {}},
    {"numbers_refused",
     {"--simulate", "capture", "--mode", "time", "--levels", "--quantity", "displacement"},
     {}},
    {"numbers_refused_json",
     {"--simulate", "--json", "record", "3", "--peaks", "2", "--levels"},
     {}},
    {"numbers_record", {"--simulate", "record", "3", "--peaks", "2", "--levels"}, {}},
    {"wrong_peaks", {"capture", "--peaks", "3,5"}, {}},
    {"wrong_quantity", {"record", "0", "--levels", "--quantity", "x"}, {}},
    {"wrong_amplitude", {"capture", "--levels", "--quantity", "density", "--amplitude", "pp"}, {}},
    {"no_amplitude", {"capture", "--levels", "--amplitude"}, {}},
    {"status", {"--simulate", "status"}, {}},
    {"status_json", {"--simulate", "--json", "status"}, {}},
    {"status_clear", {"--simulate", "status", "--clear"}, {}},
    {"adapters", {"--simulate", "adapters"}, {}},
    {"adapters_json", {"--simulate", "--json", "adapters"}, {}},
    {"command", {"--simulate", "command", "4"}, {}},
    {"command_json", {"--simulate", "--json", "command", "8"}, {}},
    {"registers_list", {"--simulate", "registers", "list"}, {}},
    {"registers_list_json", {"--simulate", "--json", "registers", "list"}, {}},
    {"registers_read", {"--simulate", "registers", "read", "prod_id"}, {}},
    {"registers_read_json", {"--simulate", "--json", "registers", "read", "TEMP_OUT"}, {}},
    {"registers_write", {"--simulate", "registers", "write", "X_NULL", "0xFFFE"}, {}},
    {"registers_write_json", {"--simulate", "--json", "registers", "write", "FFT_AVG", "7"}, {}},
    {"registers_write_unreadable", {"--simulate", "registers", "write", "COMMAND", "16"}, {}},
    {"registers_unknown", {"--simulate", "registers", "read", "NONE"}, {}},
    {"registers_no_word", {"--simulate", "registers", "write", "FFT_AVG", "70000"}, {}},
    {"registers_dump", {"--simulate", "registers", "dump"}, {}},
    {"registers_dump_json", {"--simulate", "--json", "registers", "dump", "--out", "/data"}, {}},
    {"bands_read", {"--simulate", "--scenario", "bearing-fault", "bands", "read"}, {}},
    {"bands_read_json", {"--simulate", "--json", "bands", "read"}, {}},
    {"bands_clear", {"--simulate", "bands", "clear"}, {}},
    {"bands_clear_json", {"--simulate", "--json", "bands", "clear"}, {}},
    {"bands_load", {"--simulate", "bands", "load", "/data/AlarmSpectrum_pump.csv"}, {}},
    {"bands_load_json",
     {"--simulate", "--json", "bands", "load", "/data/AlarmSpectrum_pump.csv"},
     {}},
    {"bands_load_none", {"--simulate", "bands", "load", "/data/AlarmSpectrum_no.csv"}, {}},
    {"bands_load_bad", {"--simulate", "bands", "load", "/data/AlarmSpectrum_bad.csv"}, {}},
    {"bands_write", {"--simulate", "bands", "write", "/data/AlarmSpectrum_pump.csv"}, {}},
    {"bands_write_bad", {"--simulate", "bands", "write", "/data/AlarmSpectrum_bad.csv"}, {}},
    {"bands_write_beyond", {"--simulate", "bands", "write", "/data/AlarmSpectrum_beyond.csv"}, {}},
    {"bands_save", {"--simulate", "bands", "save", "/data/AlarmSpectrum_now.csv"}, {}},
    {"bands_save_json",
     {"--simulate", "--json", "bands", "save", "/data/AlarmSpectrum_now.csv"},
     {}},
    {"bands_save_name", {"--simulate", "bands", "save", "/data/other.csv"}, {}},
    {"bands_read_stopped", {"--simulate", "bands", "read"}, milliseconds{30}},
};

// One after the other on an adapter that stays.
const Words kSession[] = {
    {"registers", "write", "REC_CTRL", "0x1038"},  // 70 g, every record kept
    {"capture", "--averages", "2"},
    {"capture", "--mode", "time"},
    {"registers", "write", "REC_CTRL", "0x1008"},  // 1 g
    {"record", "0"},
    {"--json", "record", "0"},
    {"record", "1", "--time"},
    {"record", "7", "--data"},
    {"status"},
    {"--json", "status", "--clear"},
    {"capture", "--range", "5", "--averages", "3"},
    {"registers", "read", "REC_CNT"},
};

class GoldenBench : public testing::Test {
 protected:
  GoldenBench() {
    ResetProgram();
    BandTable table;
    table(0, 3, 2) = 40;
    table(1, 3, 2) = 52;
    table(Alarm1Field(Axis::Y), 3, 2) = 120;
    Put("AlarmSpectrum_pump.csv", AlarmFileText(table));
    table(Alarm1Field(Axis::Y), 3, 2) = 70000;
    Put("AlarmSpectrum_beyond.csv", AlarmFileText(table));
    Put("AlarmSpectrum_bad.csv", AlarmFileText(BandTable{}) + "9,1,0,0,0,0,0,0,0,0\r\n");
    Put("pump_6.csv", "earlier");
    Put("pump.json", SetupText());
  }
  ~GoldenBench() override { ResetProgram(); }

  static std::string SetupText() {
    BuildRegisterTable();
    setup::Setup saved{.name = "pump", .when = *UtcFrom("2024-03-14T08:26"), .product = 31407};
    saved.registers = {5, 0, 0, 16, 0, 0x010A, 2700, 0, 0x000F, 0x0107, 0, 0x2020};
    saved.Band(1, 2) = {40, 52, 120, 120, 120, 200, 200, 200};
    return SetupFileText(saved);
  }

  void Put(const std::string& name, const std::string& content) {
    files_.contents["/data/" + name] = content;
    before_.contents["/data/" + name] = content;
  }

  // The command line, the exit code, both streams and every file that is new.
  std::string Transcript(const Words& arguments) {
    ResetProgram();
    std::ostringstream out;
    std::ostringstream error;
    const ExitCode end = RunProgram(arguments, {.clock = clock_,
                                                .files = files_,
                                                .locale = locale_,
                                                .hardware = hardware_,
                                                .interrupted = [&] { return Interrupted(); },
                                                .out = out,
                                                .error = error,
                                                .setups = "/data/setups"});
    std::string text = "kestrel-cli";
    for (const std::string& word : arguments) text += " " + word;
    text += "\n=== exit code " + std::to_string(static_cast<int>(end)) + "\n=== output\n" +
            out.str() + "=== errors\n" + error.str();
    for (const auto& [path, content] : files_.contents) {
      const auto old = before_.contents.find(path);
      if (old != before_.contents.end() && old->second == content) continue;
      text += "=== file " + path.string() + "\n" + content;
    }
    std::erase(text, '\r');
    return InOrder(text);
  }

  void PressCtrlCAt(std::chrono::nanoseconds time) { interruptAt_ = time; }
  void Attach(const Hardware& hardware) { hardware_ = hardware; }

  FakeClock clock_;

 private:
  bool Interrupted() {
    if (!interruptAt_ || clock_.Monotonic() < *interruptAt_) return false;
    interruptAt_.reset();
    return true;
  }

  // The argument parser names options that exclude one another in the order of their addresses.
  static std::string InOrder(std::string text) {
    const std::string mark = "Excludes: ";
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + 1)) {
      const auto begin = at + mark.size();
      const auto end = text.find('\n', begin);
      std::istringstream line(text.substr(begin, end - begin));
      Words names{std::istream_iterator<std::string>(line), {}};
      std::ranges::sort(names);
      std::string sorted;
      for (const std::string& name : names) sorted += (sorted.empty() ? "" : " ") + name;
      text.replace(begin, end - begin, sorted);
    }
    return text;
  }

  MemoryFiles files_;
  MemoryFiles before_;
  FixedLocale locale_;
  AbsentUsbDriver usb_;
  UnusedPort port_;
  UnusedDriverService service_;
  Hardware hardware_{&usb_, &port_, &service_};
  std::optional<std::chrono::nanoseconds> interruptAt_;
};

class Golden : public GoldenBench, public testing::WithParamInterface<Case> {};

TEST_P(Golden, OutputIsToTheLetter) {
  if (GetParam().interruptAt) PressCtrlCAt(*GetParam().interruptAt);
  CompareWithGolden(GetParam().name, Transcript(GetParam().arguments));
}

class GoldenSession : public GoldenBench {};

TEST_F(GoldenSession, OutputIsToTheLetter) {
  SimulatedHardware sensor(clock_);
  Attach({&sensor.Adapter(), &sensor.Port(), &sensor.Service()});
  std::string text;
  for (const Words& arguments : kSession) text += Transcript(arguments) + "\n";
  CompareWithGolden("session", text);
}

INSTANTIATE_TEST_SUITE_P(CommandLine, Golden, testing::ValuesIn(kCases),
                         [](const auto& chosen) { return std::string(chosen.param.name); });

}  // namespace
}  // namespace kestrel
