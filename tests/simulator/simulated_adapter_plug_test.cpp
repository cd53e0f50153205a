// Cables of the simulated boards, out and in, and the sensor's power.
// SPDX-License-Identifier: MIT

#include "simulator/simulated_adapter_bench.h"

namespace kestrel {
namespace {

TEST_F(AdapterTest, AReplugIsAnotherPluggingIn) {
  const auto before = adapter_.Plugging(Open());
  EXPECT_TRUE(adapter_.Attached("Ezusb-0"));
  EXPECT_FALSE(adapter_.Attached("Ezusb-1"));
  adapter_.Unplug(0);
  EXPECT_FALSE(adapter_.Attached("Ezusb-0"));
  adapter_.Replug(0);
  EXPECT_NE(adapter_.Plugging(Open()), before);
}

TEST_F(AdapterTest, UnpluggedBoardFailsEveryRequestUntilReopenedAfterReplugging) {
  const auto device = Open();
  adapter_.Unplug(0);
  EXPECT_FALSE(Send(device, {0}));
  EXPECT_LT(Open(), 1);
  EXPECT_EQ(adapter_.LastError(), 2);

  adapter_.Replug(0);
  EXPECT_FALSE(Send(device, {0})) << "the old handle stays dead";
  adapter_.CloseHandle(device);
  EXPECT_TRUE(Send(Open(), {0}));
  EXPECT_EQ(adapter_.HandleErrors(), 0);
}

TEST_F(AdapterTest, PendingAnswerIsGoneAfterReplugging) {
  ASSERT_TRUE(Send(Open(), {0}));
  adapter_.Unplug(0);
  adapter_.Replug(0);
  EXPECT_TRUE(Fetch(Open(), 2).empty());
}

TEST_F(AdapterTest, SensorIsPoweredThroughTheAdapterAndStartsAgainWithIt) {
  bench_.Write(reg::kFftAvg, 20);
  bench_.StartStop();
  adapter_.Unplug();
  EXPECT_EQ(bench_.Read(0x56), 0);
  EXPECT_FALSE(bench_.sensor.IsCapturing());
  adapter_.Replug();
  EXPECT_EQ(bench_.Read(0x56), 31407);
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 8) << "what was not saved is lost";
  EXPECT_FALSE(bench_.sensor.IsCapturing());
}

TEST_F(AdapterTest, SensorKeepsItsPowerAsLongAsOneCableIsPluggedIn) {
  adapter_.SetBoard(2, {});
  bench_.Write(reg::kFftAvg, 20);
  adapter_.Unplug(0);
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 20);
  adapter_.Replug(0);
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 20);
  adapter_.Unplug(2);
  adapter_.Unplug(0);
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 0);
  adapter_.Replug(2);
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 8);
}

TEST_F(AdapterTest, SensorWithoutABoardHasPowerOfItsOwn) {
  bench_.Write(reg::kFftAvg, 20);
  adapter_.RemoveBoard(0);
  EXPECT_EQ(bench_.Read(reg::kFftAvg), 20);
}

TEST_F(AdapterTest, TransferUnderWayFailsWhenTheCableIsPulled) {
  const auto device = OpenSet();
  ASSERT_TRUE(Send(device, {14, 1, 2, 0x56, 0x00, 0x56, 0x00}));
  adapter_.Unplug();
  EXPECT_TRUE(Fetch(device, 4).empty());
  EXPECT_EQ(adapter_.LastError(), 1167);
}

TEST_F(AdapterTest, BoardsCanBeSetAndRemovedByNumber) {
  adapter_.RemoveBoard(0);
  adapter_.SetBoard(3, {.product = 0xEF00, .firmwareMajor = 2, .firmwareMinor = 7});
  EXPECT_LT(Open("Ezusb-0"), 1);
  const auto device = Open("Ezusb-3");
  ASSERT_GE(device, 1);
  Bytes buffer(147);
  ASSERT_TRUE(Request(device, 0x222004, buffer, buffer));
  EXPECT_EQ(buffer[10] | buffer[11] << 8, 0xEF00);
  ASSERT_TRUE(Send(device, {0}));
  EXPECT_THAT(Fetch(device, 2), ElementsAre(2, 7));
}

}  // namespace
}  // namespace kestrel
