// Entry point of the command-line program: makes the system and starts.
// SPDX-License-Identifier: MIT

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "app/program_state.h"
#include "cli/program.h"
#include "platform/system.h"
#include "setup/setup_store.h"

namespace {

std::atomic<bool> pressed{false};

// The second Ctrl-C ends the program at once.
void OnInterrupt(int /*signal*/) {
  pressed = true;
  std::signal(SIGINT, SIG_DFL);
}

int Run(const std::vector<std::string>& arguments) {
  kestrel::System system({.portAddress = [] { return kestrel::PortAddress; }});
  kestrel::iniSystem2(kestrel::System::Version());
  return static_cast<int>(kestrel::RunProgram(
      arguments, {.clock = system.SystemClock(),
                  .files = system.SystemFiles(),
                  .locale = system.SystemLocale(),
                  .hardware = system.Devices(),
                  .usePortDevice = [&](const auto& device) { system.UsePortDevice(device); },
                  .interrupted = [] { return pressed.exchange(false); },
                  .out = std::cout,
                  .error = std::cerr,
                  .showProgress = kestrel::System::ErrorIsTerminal(),
                  .usualArchive = kestrel::archive::UsualPlace(kestrel::System::Environment),
                  .bench = kestrel::System::ComputerName(),
                  .setups = kestrel::setup::UsualSetupFolder(kestrel::System::Environment)}));
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGINT, OnInterrupt);
  try {
    return Run({argv + 1, argv + argc});
    // Faults of steps end in RunProgram; this is lack of memory and the like.
  } catch (const std::exception& error) {                  // GCOVR_EXCL_LINE
    std::cerr << "kestrel-cli: " << error.what() << '\n';  // GCOVR_EXCL_LINE
    return static_cast<int>(kestrel::ExitCode::Failure);   // GCOVR_EXCL_LINE
  }
}
