// Frames over the port, pin by pin.
// SPDX-License-Identifier: MIT
#include "transport/parallel_port.h"
#include "support/given.h"

#include "port_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

class ParallelPortTest : public PortTest {};

TEST_F(ParallelPortTest, FrameGoesOutPinByPin) {
  Given(LptWord) = 99;
  port_.LptShiftOut(0x9C34);
  EXPECT_THAT(pins_.Log(), ElementsAreArray(Pins("4 5 "
                                                 "7 3 1 5  7 7 5 5  7 7 5 5  7 3 1 5 "  // 9
                                                 "7 3 1 5  7 3 1 5  7 7 5 5  7 7 5 5 "  // C
                                                 "7 7 5 5  7 7 5 5  7 3 1 5  7 3 1 5 "  // 3
                                                 "7 7 5 5  7 3 1 5  7 7 5 5  7 7 5 5 "  // 4
                                                 "0 wait 100")));
  EXPECT_EQ(LptWord, 0);
}

TEST_F(ParallelPortTest, EveryFrameIsSeenAsItWasSent) {
  for (int frame = 0; frame <= 0xFFFF; frame += 251) {
    pins_.ClearLog();
    port_.LptShiftOut(frame);
    ASSERT_EQ(pins_.Log().size(), 2U + 16 * 4 + 2);
    ASSERT_EQ(FrameOnPins(pins_.Log()), frame);
  }
}

TEST_F(ParallelPortTest, BitsPast15AreNotSent) {
  port_.LptShiftOut(0x5A1C00);
  EXPECT_EQ(FrameOnPins(pins_.Log()), 0x1C00);
}

TEST_F(ParallelPortTest, AnExchangeSendsAFrameAndClocksAWordInMeanwhile) {
  pins_.Answer(0xA5C3);
  EXPECT_EQ(port_.LptExchange(0x9001), 0xA5C3);
  EXPECT_EQ(LptWord, 0xA5C3);
  EXPECT_THAT(pins_.Log(), ElementsAreArray(Pins("4 5 "
                                                 "7 in 3 1 5  7 in 5  7 in 5  7 in 3 1 5 "  // 9
                                                 "7 in 5  7 in 5  7 in 5  7 in 5 "          // 0
                                                 "7 in 5  7 in 5  7 in 5  7 in 5 "          // 0
                                                 "7 in 5  7 in 5  7 in 5  7 in 3 1 5 "      // 1
                                                 "0 wait 100")));
}

TEST_F(ParallelPortTest, EveryExchangedFrameIsSeenAsItWasSent) {
  for (int frame = 0; frame <= 0xFFFF; frame += 251) {
    pins_.ClearLog();
    port_.LptExchange(frame);
    ASSERT_EQ(FrameOnPins(pins_.Log()), frame);
  }
}

TEST_F(ParallelPortTest, ReadSendsTheCommandThenClocksTheAnswerIn) {
  pins_.Answer(0xA5C3);
  std::int16_t address = 0x1C;
  EXPECT_EQ(port_.LptReadWord(address), 0xA5C3);
  EXPECT_EQ(LptWord, 0xA5C3);
  EXPECT_THAT(pins_.Log(), ElementsAreArray(Pins("4 5 "
                                                 "7 7 5 5  7 7 5 5  7 7 5 5  7 3 1 5 "  // 1
                                                 "7 3 1 5  7 3 1 5  7 7 5 5  7 7 5 5 "  // C
                                                 "7 7 5 5  7 7 5 5  7 7 5 5  7 7 5 5 "  // 0
                                                 "7 7 5 5  7 7 5 5  7 7 5 5  7 7 5 5 "  // 0
                                                 "0 wait 100 "
                                                 "4 5 "
                                                 "7 in 5  7 in 5  7 in 5  7 in 5 "
                                                 "7 in 5  7 in 5  7 in 5  7 in 5 "
                                                 "7 in 5  7 in 5  7 in 5  7 in 5 "
                                                 "7 in 5  7 in 5  7 in 5  7 in 5 "
                                                 "0 wait 100")));
}

TEST_F(ParallelPortTest, EveryAnswerBitHasItsPlace) {
  std::int16_t address = 0;
  for (int bit = 0; bit < 16; ++bit) {
    pins_.Answer(1 << bit);
    EXPECT_EQ(port_.LptReadWord(address), 1 << bit);
  }
  for (const int word : {0, 0xFFFF, 0x8001, 0x7FFE}) {
    pins_.Answer(word);
    EXPECT_EQ(port_.LptReadWord(address), word);
  }
}

TEST_F(ParallelPortTest, ReadMasksTheCallersAddress) {
  std::int16_t address = 0x19C;
  static_cast<void>(port_.LptReadWord(address));
  EXPECT_EQ(address, 0x1C);
  std::int16_t negative = -1;
  static_cast<void>(port_.LptReadWord(negative));
  EXPECT_EQ(negative, 127);
}

TEST_F(ParallelPortTest, ResetPutsTheLinesIntoTheirIdleState) {
  port_.LptPortReset();
  EXPECT_THAT(pins_.Log(), ElementsAreArray(Pins("status=64 wait 100 0")));
}

TEST_F(ParallelPortTest, OtherInterfacesLeaveThePinsAlone) {
  for (const std::int16_t type : {kNoInterface, kUsbAdapter, std::int16_t{7}}) {
    Given(InterfaceType) = type;
    Given(LptWord) = 99;
    std::int16_t address = 0x19C;
    port_.LptShiftOut(0x9C34);
    EXPECT_EQ(port_.LptReadWord(address), 0);
    port_.LptPortReset();
    EXPECT_EQ(address, 0x19C);
    EXPECT_EQ(LptWord, 99);
  }
  EXPECT_THAT(pins_.Log(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
