// The system of a program of the command line, its signals and its last words.
// SPDX-License-Identifier: MIT
#include "cli/entry.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "app/program_state.h"
#include "cli/program.h"
#include "numeric/runtime_error.h"
#include "platform/beside.h"
#include "platform/system.h"
#include "setup/setup_store.h"

namespace kestrel {
namespace {

std::atomic<bool> pressed{false};

// The second Ctrl-C ends the program at once.
void OnInterrupt(int /*signal*/) {
  pressed = true;
  std::signal(SIGINT, SIG_DFL);
}

std::atomic<bool> ended{false};

// The second one ends the program at once.
void OnEnd(int signal) {
  ended = true;
  std::signal(signal, SIG_DFL);
}

void HearEnd() {
  std::signal(SIGINT, OnEnd);
  std::signal(SIGTERM, OnEnd);
#ifdef SIGHUP
  std::signal(SIGHUP, OnEnd);
#endif
}

constexpr const char* kPainter = "kestrel-report";

ExitCode DoneByPainter(char** argv) {
  if (const auto code = RunBeside(kPainter, argv)) return static_cast<ExitCode>(*code);
  throw RuntimeError(std::string("Reports are printed by ") + kPainter +
                     ", which is not where this program is. Install the whole package again.");
}

int Run(char** argv, const std::vector<std::string>& arguments, report::ReportPainter* painter) {
  std::string user = "kestrel-cli";
  System system({.portAddress = [] { return PortAddress; },
                 .user = [&user] { return user; },
                 .inUse = [](const std::string& line) { std::cerr << line << '\n'; }});
  iniSystem2(System::Version());
  return static_cast<int>(RunProgram(
      arguments,
      {.clock = system.SystemClock(),
       .files = system.SystemFiles(),
       .locale = system.SystemLocale(),
       .hardware = system.Devices(),
       .usePortDevice = [&](const auto& device) { system.UsePortDevice(device); },
       .interrupted = [] { return pressed.exchange(false); },
       .out = std::cout,
       .error = std::cerr,
       .showProgress = System::ErrorIsTerminal(),
       .usualArchive = archive::UsualPlace(System::Environment),
       .bench = System::ComputerName(),
       .setups = setup::UsualSetupFolder(System::Environment),
       .painter = painter,
       .doneByPainter = [argv] { return DoneByPainter(argv); },
       .hearEnd = HearEnd,
       .keepMemorySmall = System::KeepMemorySmall,
       .ending = [] { return ended.load(); },
       .hearInputEnd = [] { System::WatchInput([] { ended = true; }); },
       .sinceBoot = System::SinceBoot,
       .claim = [&system](const auto& name) { return system.Claim(name); },
       .nameBench = [&user](const std::string& bench) { user = "kestrel-cli, bench " + bench; }}));
}

}  // namespace

int Enter(int argc, char** argv, report::ReportPainter* painter) {
  std::signal(SIGINT, OnInterrupt);
  try {
    return Run(argv, System::Arguments(argc, argv), painter);
    // Faults of steps end in RunProgram; this is lack of memory and the like.
  } catch (const std::exception& error) {                  // GCOVR_EXCL_LINE
    std::cerr << "kestrel-cli: " << error.what() << '\n';  // GCOVR_EXCL_LINE
    return static_cast<int>(ExitCode::Failure);            // GCOVR_EXCL_LINE
  }
}

}  // namespace kestrel
