// Frames over the simulated port's pins.
// SPDX-License-Identifier: MIT
#include "simulator/simulated_port.h"

#include <gtest/gtest.h>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

class PortTest : public ::testing::Test {
 protected:
  void Out(int value) { port_.vbOut(0x378, static_cast<std::int16_t>(value)); }
  int StatusBit() { return port_.vbInp(0x379) & 0x40; }

  void Select() {
    Out(4);
    Out(5);
  }
  void Release() { Out(0); }
  void ClockIn(unsigned frame, int clocks = 16) {
    for (int bit = clocks - 1; bit >= 0; --bit) {
      const int line = (frame >> bit & 1U) != 0 ? 0 : 4;
      Out(7);
      Out(line + 3);
      Out(line + 1);
      Out(5);
    }
  }
  void Send(unsigned frame) {
    Select();
    ClockIn(frame);
    Release();
  }
  unsigned Receive() {
    unsigned word = 0;
    Select();
    for (int bit = 15; bit >= 0; --bit) {
      Out(7);
      if (StatusBit() == 0) word |= 1U << bit;
      Out(5);
    }
    Release();
    return word;
  }

  Bench bench_;
  SimulatedPort port_{bench_.sensor};
};

TEST_F(PortTest, ReadIsAnsweredInTheNextFrame) {
  Send(0x5600);
  EXPECT_EQ(Receive(), 31407U);
  Send(0x1C00);
  EXPECT_EQ(Receive(), 0x1030U);
}

TEST_F(PortTest, WriteReachesTheRegister) {
  Send(0x9EA5);
  EXPECT_EQ(bench_.Read(reg::kRecPrd), 0x00A5);
}

TEST_F(PortTest, AnswerFrameIsAReadOfAddressZeroAndChangesNothing) {
  Send(0x5600);
  ASSERT_EQ(Receive(), 31407U);
  EXPECT_EQ(bench_.sensor.PendingAnswer(), 0) << "register 0 holds 0";
  EXPECT_EQ(bench_.Status(), 0);
}

TEST_F(PortTest, DataLineIsInvertedAndSampledOnTheFallingClock) {
  Select();
  // 0x9E01, bit by bit; the data line holds the wrong level while the clock is high.
  for (int bit = 15; bit >= 0; --bit) {
    const int line = (0x9E01U >> bit & 1U) != 0 ? 0 : 4;
    Out((4 - line) + 3);
    Out(line + 1);
    Out((4 - line) + 1);
  }
  Release();
  EXPECT_EQ(bench_.Read(reg::kRecPrd), 1);
}

TEST_F(PortTest, AnswerBitsAppearOnTheRisingClockInverted) {
  Send(0x1C00);  // 0x1030: bit 12 is the first one
  Select();
  for (int bit = 15; bit >= 12; --bit) {
    Out(7);
    EXPECT_EQ(StatusBit(), bit == 12 ? 0 : 0x40) << bit;
    Out(5);
    EXPECT_EQ(StatusBit(), bit == 12 ? 0 : 0x40) << "kept until the clock rises again";
  }
}

TEST_F(PortTest, FrameOfAWrongLengthIsAnSpiFailure) {
  for (const int clocks : {1, 15, 17, 32}) {
    Select();
    ClockIn(0x9E01, clocks);
    Release();
    EXPECT_EQ(bench_.Status(), 0x0008) << clocks;
    EXPECT_EQ(bench_.Read(reg::kRecPrd), 0) << clocks;
    bench_.Give(0x0010);
  }
}

TEST_F(PortTest, SelectWithoutClocksIsNoFrame) {
  Send(0x5600);
  Select();
  Release();
  EXPECT_EQ(bench_.Status(), 0);
  Send(0x5600);
  Select();
  Release();
  EXPECT_EQ(Receive(), 31407U);
}

TEST_F(PortTest, ClocksWithoutSelectAreNotSeen) {
  Send(0x5600);
  Select();
  Release();
  for (int clock = 0; clock < 16; ++clock) {
    Out(6);
    EXPECT_EQ(StatusBit(), 0x40) << "line released";
    Out(4);
  }
  EXPECT_EQ(Receive(), 31407U);
  EXPECT_EQ(bench_.Status(), 0);
}

TEST_F(PortTest, PortResetDisturbsNothing) {
  port_.vbOut(0x379, 0x40);
  Out(0);
  Send(0x5600);
  EXPECT_EQ(Receive(), 31407U);
}

TEST_F(PortTest, OtherAddressesReadAllOnesAndTakeNothing) {
  EXPECT_EQ(port_.vbInp(0x37A), 0xFF);
  EXPECT_EQ(port_.vbInp(0x278), 0xFF);
  port_.vbOut(0x278, 5);
  EXPECT_EQ(port_.vbInp(0x378), 0);
}

TEST_F(PortTest, OtherStatusBitsAreConstant) {
  Send(0x5600);
  const int idle = port_.vbInp(0x379);
  Select();
  Out(7);
  Out(5);
  Out(7);  // second bit of 31407 is a 1
  EXPECT_EQ(port_.vbInp(0x379), idle & ~0x40);
}

TEST_F(PortTest, AnotherBaseAddressMovesThePort) {
  SimulatedPort port(bench_.sensor, 0x278);
  port.vbOut(0x278, 5);
  EXPECT_EQ(port.vbInp(0x278), 5);
  EXPECT_EQ(port.vbInp(0x379), 0xFF);
  EXPECT_NE(port.vbInp(0x279), 0xFF);
}

TEST_F(PortTest, GrantOfAccessIsRemembered) {
  EXPECT_FALSE(port_.AccessGranted());
  port_.giveio();
  EXPECT_TRUE(port_.AccessGranted());
}

}  // namespace
}  // namespace kestrel
