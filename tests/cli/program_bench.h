// The whole command-line program in swift time, with files in memory.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/program.h"
#include "support/absent_hardware.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/reset_program.h"
#include "support/swift_clock.h"
#include "support/unused_hardware.h"

namespace kestrel {

// The whole command-line program in swift time, with files in memory.
class ProgramBench : public testing::Test {
 protected:
  ProgramBench() { ResetProgram(); }
  ~ProgramBench() override { ResetProgram(); }

  ExitCode Run(const std::vector<std::string>& arguments) {
    ResetProgram();
    out.str("");
    error.str("");
    return RunProgram(arguments, {.clock = clock,
                                  .files = files,
                                  .locale = locale,
                                  .hardware = {driver, &port, &service},
                                  .usePortDevice = [this](const auto& d) { portDevice = d; },
                                  .interrupted = interrupted,
                                  .out = out,
                                  .error = error,
                                  .showProgress = showProgress,
                                  .usualArchive = usualArchive,
                                  .bench = "bench 1",
                                  .setups = setups,
                                  .painter = painter,
                                  .doneByPainter = doneByPainter,
                                  .hearEnd = [] {},
                                  .ending = ending,
                                  .sinceBoot = {}});
  }

  // On the simulated sensor.
  ExitCode Simulate(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--simulate");
    return Run(arguments);
  }
  nlohmann::json SimulateJson(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--json");
    EXPECT_EQ(Simulate(arguments), ExitCode::Success) << error.str();
    return nlohmann::json::parse(out.str());
  }

  SwiftClock clock;
  MemoryFiles files;
  FixedLocale locale;
  AbsentUsbDriver usb;
  UsbDriver* driver = &usb;
  UnusedPort port;
  UnusedDriverService service;
  std::function<bool()> interrupted = [] { return false; };
  bool showProgress = false;
  archive::Place usualArchive{};   // none: nothing is kept
  std::filesystem::path setups{};  // none: nowhere
  std::string portDevice;          // that the program asked for
  report::ReportPainter* painter = nullptr;
  std::function<ExitCode()> doneByPainter = [] { return ExitCode::Failure; };
  std::function<bool()> ending = [] { return false; };
  std::ostringstream out;
  std::ostringstream error;
};

}  // namespace kestrel
