// The Python package on a mock USB bus whose board goes away at one transfer after another.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <thread>

#include "hardware/libusb_bench.h"
#include "platform/linux/system_clock.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using testing::MatchesRegex;

constexpr int kMostRounds = 24;
constexpr int kShort = 500;  // transfers; a longer step takes seconds
constexpr int kMostLongRounds = 4;
constexpr auto kLongestRound = 30s;

// Each transfer of a short step; of a long one the first, the last, and some between them.
std::vector<int> Places(int transfers) {
  std::set<int> places;
  const int rounds = std::min(transfers, transfers < kShort ? kMostRounds : kMostLongRounds);
  for (int i = 0; i < rounds; ++i) places.insert(1 + (transfers - 1) * i / std::max(rounds - 1, 1));
  return {places.begin(), places.end()};
}

class PythonWalk : public testing::TestWithParam<const char*> {
 protected:
  PythonWalk() {
    setenv("XDG_DATA_HOME", folder_.path().c_str(), 1);
    setenv("PYTHONPATH", KESTREL_PYTHON_PATH, 1);
  }
  ~PythonWalk() override {
    unsetenv("PYTHONPATH");
    unsetenv("XDG_DATA_HOME");
  }

  void Start(int rounds) {
    script_.emplace(std::vector<std::string>{KESTREL_PYTHON, KESTREL_VANISHING, folder_.path(),
                                             GetParam(), std::to_string(rounds)},
                    folder_.path() / "fault");
  }

  // One round with a board of its own; what the script says of it.
  std::string Round(int number, int unplugAt) {
    MockBoard& board = bus_.Plug(Board(1, "1", 4 + number, 0xED03));
    board.unplugAt = unplugAt;
    folder_.Write("go" + std::to_string(number), "");
    const auto end = std::chrono::steady_clock::now() + kLongestRound;
    std::vector<std::string> said;
    do {
      if (std::chrono::steady_clock::now() > end) return "hangs";
      if (!script_->IsRunning()) return "ends: " + folder_.Content("fault");
      std::this_thread::sleep_for(2ms);
      said = Lines(folder_.Content("said"));
    } while (said.size() <= static_cast<std::size_t>(number));
    transfers_ = board.bulkTransfers;
    bus_.Unplug(board);
    return said.back();
  }

  static std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text.substr(0, text.rfind('\n') + 1));
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  TemporaryFolder folder_;
  SystemClock clock_;
  SimulatedSensor sensor_{clock_, RunningMachine()};
  MockUsbBus bus_{sensor_};
  std::optional<ChildProcess> script_;
  int transfers_ = 0;  // of the round before
};

TEST_P(PythonWalk, ALostSensorIsAnExceptionAtEachTransferAndTheNextOneWorks) {
  Start(kMostRounds + 2);
  ASSERT_EQ(Round(0, 0), "done");
  ASSERT_GT(transfers_, 1);
  int number = 0;
  int lost = 0;
  for (const int place : Places(transfers_)) {
    SCOPED_TRACE(place);
    const std::string said = Round(++number, place);
    if (transfers_ < place) {  // a step may take a few less than the first one did
      ASSERT_EQ(said, "done");
      continue;
    }
    ASSERT_THAT(said, MatchesRegex("lost( on opening| afterwards)?: .+"));
    ++lost;
  }
  EXPECT_GT(lost, number / 2);
  EXPECT_EQ(Round(++number, 0), "done");
}

INSTANTIATE_TEST_SUITE_P(Steps, PythonWalk,
                         testing::Values("open", "capture", "registers", "state", "bands", "setup",
                                         "wide"),
                         [](const auto& step) { return std::string(step.param); });

}  // namespace
}  // namespace kestrel
