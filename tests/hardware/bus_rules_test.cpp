// The boards of systems that do not tell of pluggings, or that have another driver beside.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <set>
#include <thread>

#include "hardware/libusb_bench.h"
#include "support/other_user.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

// A list that is not live; the pauses are short, lest the tests wait.
class SilentBus : public LibusbBench {
 protected:
  static constexpr std::chrono::milliseconds kPlug{150};

  SilentBus() {
    rules.isListLive = false;
    rules.shortestPlug = kPlug;
    rules.listAge = 0ms;
  }
  static UsbDriver::Handle Open(LibusbDriver& boards, int n) {
    return boards.CreateFile("\\\\.\\Ezusb-" + std::to_string(n), 0x40000000, 2, 3);
  }
  static std::uint32_t Plugging(LibusbDriver& boards, int n) {
    const auto handle = Open(boards, n);
    const std::uint32_t plugging = handle < 1 ? 0 : boards.Plugging(handle);
    if (handle >= 1) boards.CloseHandle(handle);
    return plugging;
  }

  UsbBusRules rules;
};

TEST_F(SilentBus, ABoardInUseStaysTheSamePluggingIn) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  LibusbDriver boards(kShortLimit, {}, rules);
  const std::uint32_t first = Plugging(boards, 0);
  EXPECT_NE(first, 0U);
  EXPECT_EQ(Plugging(boards, 0), first);
}

TEST_F(SilentBus, APauseInWhichACableCouldBePulledCountsAsAPluggingIn) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  bus.Plug(Board(1, "3", 5, 0xEF00));
  LibusbDriver boards(kShortLimit, {}, rules);
  const std::uint32_t first = Plugging(boards, 1);
  std::this_thread::sleep_for(kPlug);
  const std::uint32_t second = Plugging(boards, 1);
  EXPECT_NE(second, 0U);
  EXPECT_NE(second, first);
}

TEST_F(SilentBus, ABoardIsLookedForAgainOnceItHasFailed) {
  rules.shortestPlug = 1h;
  const MockBoardPlan plan = Board(1, "1", 4, 0xED03);
  MockBoard& board = bus.Plug(plan);
  LibusbDriver boards(kShortLimit, {}, rules);
  const std::uint32_t first = Plugging(boards, 0);
  ASSERT_NE(first, 0U);
  const auto handle = Open(boards, 0);
  board.unplugAt = 1;
  Bytes version = {0};
  const Bytes pipe = {0, 0, 0, 0};
  EXPECT_FALSE(boards.DeviceIoControl(handle, kBulkTransfer, pipe, version, moved));
  EXPECT_EQ(boards.LastError(), kUsbNotAttached);
  boards.CloseHandle(handle);
  bus.Unplug(board);
  bus.Plug(Board(1, "1", 9, 0xED03));
  std::uint32_t second = 0;
  for (int tries = 0; tries < 2000 && second == 0; ++tries) {
    second = Plugging(boards, 0);
    std::this_thread::sleep_for(1ms);
  }
  EXPECT_NE(second, 0U);
  EXPECT_NE(second, first);
}

TEST_F(SilentBus, ABoardThatIsGoneIsNotAttachedWhoeverUsedItLast) {
  rules.shortestPlug = 1h;
  MockBoard& board = bus.Plug(Board(1, "1", 4, 0xED03));
  LibusbDriver boards(kShortLimit, {}, rules);
  ASSERT_NE(Plugging(boards, 0), 0U);
  bus.Unplug(board);
  for (int tries = 0; tries < 2000 && boards.Attached("Ezusb-0"); ++tries) {
    std::this_thread::sleep_for(1ms);
  }
  EXPECT_FALSE(boards.Attached("Ezusb-0"));
  EXPECT_EQ(Plugging(boards, 0), 0U);
}

TEST_F(SilentBus, AListHoldsForAMomentWhereNoBoardStands) {
  rules.listAge = 1h;
  rules.shortestPlug = 1h;
  LibusbDriver boards(kShortLimit, {}, rules);
  EXPECT_FALSE(boards.Attached("Ezusb-0"));
  bus.Plug(Board(1, "1", 4, 0xED03));
  std::this_thread::sleep_for(50ms);
  EXPECT_FALSE(boards.Attached("Ezusb-0")) << "asked the system again at once";
}

// Another driver has boards under some of the numbers.
class TwoDrivers : public SilentBus {
 protected:
  TwoDrivers() {
    rules.isListLive = {};
    rules.isTaken = [this](std::size_t number) { return taken.contains(number); };
  }

  std::set<std::size_t> taken;
};

TEST_F(TwoDrivers, NumbersOfTheOtherDriversBoardsAreLeftToIt) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  bus.Plug(Board(1, "3", 5, 0xEF00));
  taken = {0, 2};
  LibusbDriver boards(kShortLimit, {}, rules);
  EXPECT_FALSE(boards.Attached("Ezusb-0"));
  EXPECT_TRUE(boards.Attached("Ezusb-1"));
  EXPECT_FALSE(boards.Attached("Ezusb-2"));
  EXPECT_TRUE(boards.Attached("Ezusb-3"));
}

TEST_F(TwoDrivers, ABoardMakesRoomForOneOfTheOtherDriver) {
  bus.Plug(Board(1, "1", 4, 0xED03));
  LibusbDriver boards(kShortLimit, {}, rules);
  const std::uint32_t plugging = Plugging(boards, 0);
  ASSERT_NE(plugging, 0U);
  taken = {0};
  EXPECT_FALSE(boards.Attached("Ezusb-0"));
  EXPECT_EQ(Plugging(boards, 1), plugging) << "it is the same board, plugged in once";
}

TEST_F(TwoDrivers, ARefusalIsToldAsTheSystemMeansIt) {
  const MockBoardPlan plan = Board(1, "1", 4, 0xED03);
  bus.Plug(plan);
  LibusbDriver boards(kShortLimit, {}, rules, kUsbBusyElsewhere);
  ASSERT_NE(Plugging(boards, 0), 0U);
  bus.Permit(plan, false);
  const OtherUser ordinary;
  EXPECT_LT(Open(boards, 0), 1);
  EXPECT_EQ(boards.LastError(), kUsbBusyElsewhere);
}

}  // namespace
}  // namespace kestrel
