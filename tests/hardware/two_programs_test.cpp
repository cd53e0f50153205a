// Two real programs that want the one board on a mock USB bus.
// SPDX-License-Identifier: MIT
#include <thread>

#include "hardware/libusb_bench.h"
#include "platform/linux/system_clock.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

class TwoPrograms : public testing::Test {
 protected:
  TwoPrograms() {
    setenv("XDG_DATA_HOME", folder_.path().c_str(), 1);
    bus_.Plug(Board(1, "1", 4, 0xED03));
  }
  ~TwoPrograms() override { unsetenv("XDG_DATA_HOME"); }

  ChildProcess Start(std::vector<std::string> words, const std::string& output) {
    words.insert(words.begin(), KESTREL_CLI);
    return {words, folder_.path() / output};
  }
  // What a program says until it ends.
  std::string Said(const std::vector<std::string>& words) {
    folder_.Write("said", "");
    ChildProcess program = Start(words, "said");
    EXPECT_TRUE(Wait([&] { return !program.IsRunning(); }));
    return folder_.Content("said");
  }
  static bool Wait(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(10ms);
    }
    return true;
  }

  TemporaryFolder folder_;
  SystemClock clock_;
  SimulatedSensor sensor_{clock_, RunningMachine()};
  MockUsbBus bus_{sensor_};
};

TEST_F(TwoPrograms, TheSecondIsToldWhoHasTheBoardAndGetsItAfterwards) {
  const auto plan = folder_.Write("pump.plan",
                                  "bench = Hall 3\nsensor = Pump 7\nconnect = usb\nevery = 1 h\n"
                                  "[capture]\naverages = 1\n");
  ChildProcess monitor = Start({"monitor", plan.string()}, "monitor");
  const std::string holder =
      "is in use by kestrel-cli, bench Hall 3 (process " + std::to_string(monitor.Id()) + ")";
  ASSERT_TRUE(Wait([&] {
    return folder_.Content("monitor").find("Kept record") != std::string::npos;
  })) << folder_.Content("monitor");
  const std::string refused = Said({"capture", "--averages", "1", "--no-archive"});
  EXPECT_NE(refused.find(holder), std::string::npos) << refused;
  monitor.End(SIGTERM);
  const std::string taken = Said({"capture", "--averages", "1", "--no-archive"});
  EXPECT_EQ(taken.find("in use"), std::string::npos) << taken;
  EXPECT_NE(taken.find(" g"), std::string::npos) << taken;
}

TEST_F(TwoPrograms, ABoardWhoseHolderWasKilledIsFree) {
  const auto plan = folder_.Write("pump.plan",
                                  "bench = Hall 3\nsensor = Pump 7\nconnect = usb\nevery = 1 h\n"
                                  "[capture]\naverages = 1\n");
  for (int i = 0; i < 2; ++i) {
    const std::string output = "monitor " + std::to_string(i);
    ChildProcess monitor = Start({"monitor", plan.string()}, output);
    EXPECT_TRUE(Wait([&] {
      return folder_.Content(output).find("Kept record") != std::string::npos;
    })) << folder_.Content(output);
    monitor.End(SIGKILL);
  }
}

}  // namespace
}  // namespace kestrel
