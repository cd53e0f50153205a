// The command-line program over mock boards and mock ports.
// SPDX-License-Identifier: MIT
// The command-line program over a board on a mock USB bus and over a mock parallel port.

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/program.h"
#include "hardware/libusb_bench.h"
#include "hardware/mock_parallel_port.h"
#include "platform/system.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/reset_program.h"
#include "support/swift_clock.h"
#include "support/unused_hardware.h"

namespace kestrel {
namespace {

class CliOverUsb : public LibusbBench {
 protected:
  CliOverUsb() { ResetProgram(); }
  ~CliOverUsb() override { ResetProgram(); }

  ExitCode Run(const std::vector<std::string>& arguments) {
    out.str("");
    error.str("");
    return RunProgram(arguments, {.clock = clock,
                                  .files = files,
                                  .locale = locale,
                                  .hardware = {&driver, &port, &service},
                                  .interrupted = [] { return false; },
                                  .out = out,
                                  .error = error});
  }

  MemoryFiles files;
  FixedLocale locale;
  UnusedPort port;
  UnusedDriverService service;
  std::ostringstream out;
  std::ostringstream error;
};

TEST_F(CliOverUsb, AWholeCaptureGoesThroughTheBoardThatWasNamed) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  bus.Plug(Board(1, "3", 5, 0xEF00));
  ASSERT_EQ(Run({"--json", "--adapter", "Ezusb-1", "capture", "--averages", "1"}),
            ExitCode::Success)
      << error.str();
  const auto json = nlohmann::json::parse(out.str());
  EXPECT_NEAR(json["axes"]["X"]["peak_g"], 0.6, 0.1);
  EXPECT_EQ(json["status"]["Data Ready"], "SET");
}

TEST_F(CliOverUsb, TheBoardsAreListed) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  bus.Plug(Board(1, "3", 5, 0xEF00));
  ASSERT_EQ(Run({"--json", "adapters"}), ExitCode::Success) << error.str();
  const auto json = nlohmann::json::parse(out.str());
  ASSERT_EQ(json.size(), 2U);
  EXPECT_EQ(json[0]["type"], "FIFO4");
  EXPECT_EQ(json[1]["type"], "MCP");
}

TEST_F(CliOverUsb, ASetupGoesThereAndBackThroughTheBoard) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  ASSERT_EQ(Run({"setup", "save", "--file", "/pump.json"}), ExitCode::Success) << error.str();
  ASSERT_EQ(Run({"registers", "write", "ALM_CTRL", "0x0107"}), ExitCode::Success) << error.str();
  ASSERT_EQ(Run({"setup", "diff", "--file", "/pump.json"}), ExitCode::Different) << error.str();
  EXPECT_NE(out.str().find("ALM_CTRL, Response Delay: saved 0, now 1"), std::string::npos);
  ASSERT_EQ(Run({"setup", "restore", "--file", "/pump.json"}), ExitCode::Success) << error.str();
  EXPECT_EQ(Run({"setup", "diff", "--file", "/pump.json"}), ExitCode::Success) << out.str();
}

TEST_F(CliOverUsb, WithNothingAttachedItEndsWithACodeOfItsOwn) {
  EXPECT_EQ(Run({"status"}), ExitCode::NoSensor);
}

// Over two parallel ports of which the system tells no address.
class CliOverParallelPort : public testing::Test {
 protected:
  CliOverParallelPort() { ResetProgram(); }
  ~CliOverParallelPort() override { ResetProgram(); }

  ExitCode Run(const std::vector<std::string>& arguments) {
    return RunProgram(
        arguments,
        {.clock = clock,
         .files = files,
         .locale = locale,
         .hardware = system.Devices(),
         .usePortDevice = [this](const std::string& device) { system.UsePortDevice(device); },
         .interrupted = [] { return false; },
         .out = out,
         .error = error});
  }

  SwiftClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockTestbed testbed;
  MockParallelPort first{testbed, 0, sensor};
  MockParallelPort second{testbed, 1, sensor};
  System system{{.portAddress = [] { return PortAddress; }}};
  MemoryFiles files;
  FixedLocale locale;
  std::ostringstream out;
  std::ostringstream error;
};

TEST_F(CliOverParallelPort, TheDeviceThatWasNamedIsUsed) {
  ASSERT_EQ(Run({"--json", "--port-device", "/dev/parport1", "registers", "read", "PROD_ID"}),
            ExitCode::Success)
      << error.str();
  EXPECT_EQ(nlohmann::json::parse(out.str())["value"], 31407);
  EXPECT_EQ(error.str(), "");
  EXPECT_FALSE(first.Claimed());
  EXPECT_TRUE(second.Claimed());
}

TEST_F(CliOverParallelPort, APortThatCannotBeHadIsNoSensor) {
  EXPECT_EQ(Run({"--port-device", "/dev/parport7", "registers", "read", "PROD_ID"}),
            ExitCode::NoSensor);
  EXPECT_NE(error.str().find("/dev/parport7 does not exist"), std::string::npos) << error.str();
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace kestrel
