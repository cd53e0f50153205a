// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// The command-line program over a board on a mock USB bus.

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/program.h"
#include "hardware/libusb_bench.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/reset_program.h"
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

TEST_F(CliOverUsb, WithNothingAttachedItEndsWithACodeOfItsOwn) {
  EXPECT_EQ(Run({"status"}), ExitCode::NoSensor);
}

}  // namespace
}  // namespace kestrel
