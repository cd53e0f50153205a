// Arbitrary arguments to the command-line program.
// SPDX-License-Identifier: MIT
// Arbitrary arguments to the command-line program, on the simulated sensor or on a computer
// without any, with files in memory.

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "absent_port.h"
#include "alarms/alarm_file.h"
#include "cli/program.h"
#include "counting_clock.h"
#include "input.h"
#include "require.h"
#include "support/absent_hardware.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/reset_program.h"

namespace kestrel {
namespace {

constexpr std::size_t kMostArguments = 20;
constexpr std::size_t kMostText = 1000;  // of all arguments
// Ctrl-C comes whenever it has been asked for so often: captures may go on for years.
constexpr int kMostGlances = 1500;

// Files in memory; "/locked" is a folder that nobody can write in.
class TargetFiles : public MemoryFiles {
 public:
  TargetFiles() {
    readOnly.insert("/locked");
    BandTable table;
    table(kFLowField, 1, 0) = 10;
    table(kFHighField, 1, 0) = 20;
    contents["/data/AlarmSpectrum_pump.csv"] = AlarmFileText(table);
    contents["/data/AlarmSpectrum_bad.csv"] = "nothing of the kind";
    contents["/data/log_7.csv"] = "";
    earlier_ = contents;
  }

  void ReplaceWhole(const std::filesystem::path& file, std::string_view content) override {
    if (!CanWriteIn(file.parent_path())) throw RuntimeError(file.string() + ": locked");
    Require(file.is_absolute() && file.has_filename(), "a file is written where it can be found");
    MemoryFiles::ReplaceWhole(file, content);
  }

  // Whether the files that were there are still the same, "AlarmSpectrum_" ones apart.
  [[nodiscard]] bool EarlierStay() const {
    return std::all_of(earlier_.begin(), earlier_.end(), [this](const auto& file) {
      return file.first.string().find("AlarmSpectrum_") != std::string::npos ||
             contents.at(file.first) == file.second;
    });
  }

 private:
  std::map<std::filesystem::path, std::string> earlier_;
};

std::vector<std::string> ArgumentsOf(Input& input) {
  std::vector<std::string> arguments;
  while (!input.Empty() && arguments.size() < kMostArguments) {
    arguments.emplace_back(input.Until('\n'));
    std::erase(arguments.back(), '\0');  // no argument has one
  }
  return arguments;
}

void CheckJson(const std::string& text) {
  std::istringstream stream(text);
  while (stream >> std::ws && !stream.eof()) {
    nlohmann::json value;
    stream >> value;
    Require(!stream.fail() && !value.is_null(), "JSON is JSON");
  }
}

void CheckEnd(ExitCode end, const std::vector<std::string>& arguments, const std::string& out,
              const std::string& error) {
  const auto has = [&](const char* word) {
    return std::find(arguments.begin(), arguments.end(), word) != arguments.end();
  };
  switch (end) {
    case ExitCode::Success:
      // Help and version are never JSON.
      if (has("--json") && (out.starts_with('{') || out.starts_with('['))) CheckJson(out);
      return;
    case ExitCode::Usage:
      Require(out.empty(), "a command line that makes no sense does nothing");
      [[fallthrough]];
    case ExitCode::Failure:
    case ExitCode::NoSensor:
    case ExitCode::NotNew:
      Require(!error.empty(), "a failure is explained");
      return;
    case ExitCode::Different:
      Require(!out.empty(), "a difference is shown");
      return;
    case ExitCode::Interrupted:
      return;
  }
  Require(false, "an exit code is one of the documented");
}

void Run(Input& input) {
  ResetProgram();
  CountingClock clock;
  TargetFiles files;
  FixedLocale locale;
  AbsentUsbDriver usb;
  AbsentPort port;
  AbsentDriverService service;
  std::ostringstream out;
  std::ostringstream error;
  const std::uint8_t choices = input.Byte();
  const int pressedAt = (choices & 1U) != 0 ? input.Between(2, 255) : kMostGlances;
  int glances = 0;
  if ((choices & 2U) != 0) {
    files.contents["/working/CommPort.cfg"] =
        (choices & 4U) != 0 ? "Interface = 1\n" : "Interface = x\n";
  }
  const std::vector<std::string> arguments = ArgumentsOf(input);
  const ExitCode end =
      RunProgram(arguments, {.clock = clock,
                             .files = files,
                             .locale = locale,
                             .hardware = {&usb, &port, &service},
                             .interrupted = [&] { return ++glances % pressedAt == 0; },
                             .out = out,
                             .error = error,
                             .showProgress = (choices & 8U) != 0});
  CheckEnd(end, arguments, out.str(), error.str());
  Require(files.EarlierStay(), "no capture and no listing replaces a file");
  ResetProgram();
}

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, kestrel::kMostText);
  kestrel::Input input(data, size);
  kestrel::Run(input);
  return 0;
}
