// Every program-wide name has its start value and comes back to it.
// SPDX-License-Identifier: MIT
#include "app/program_state.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

class ProgramState : public testing::Test {
 protected:
  ProgramState() { ResetProgramState(); }
  ~ProgramState() override { ResetProgramState(); }

  static void SetEverythingElsewhere() {
    InterfaceType = kUsbAdapter;
    PortAddress = 888;
    ProductNumber = kProduct31407;
    PortReady = true;
    StopSpiLoop = false;
    UsbPresent = true;
    UsbCsPerWord = false;
    UsbSpiDelay = 5;
    UsbSpiBits = 1;
    UsbSpiSetupValue = 2;
    clrRed = clrGreen = clrYellow = clrAmber = clrMagenta = clrCyan = 1;
  }

  static void ExpectStartDefaults() {
    EXPECT_EQ(InterfaceType, 0);
    EXPECT_FALSE(PortReady);
    EXPECT_TRUE(StopSpiLoop);
    EXPECT_TRUE(UsbCsPerWord);
    EXPECT_EQ(UsbSpiDelay, 1);
    EXPECT_EQ(UsbSpiBits, 120);
    EXPECT_EQ(UsbSpiSetupValue, 25);
  }
};

TEST_F(ProgramState, ResetRestoresEveryName) {
  SetEverythingElsewhere();
  ResetProgramState();
  ExpectStartDefaults();
  EXPECT_EQ(PortAddress, 0);
  EXPECT_EQ(ProductNumber, 0);
  EXPECT_FALSE(UsbPresent);
  for (const double colour : {clrRed, clrGreen, clrYellow, clrAmber, clrMagenta, clrCyan}) {
    EXPECT_EQ(colour, 0);
  }
}

TEST_F(ProgramState, StartDefaultsLeaveTheRestAlone) {
  SetEverythingElsewhere();
  SetStartDefaults();
  ExpectStartDefaults();
  EXPECT_EQ(PortAddress, 888);
  EXPECT_EQ(ProductNumber, 31407);
  EXPECT_EQ(clrRed, 1);
}

TEST_F(ProgramState, ColoursHaveRedInTheLowByte) {
  SetColours();
  EXPECT_EQ(clrRed, 0x0000E6);
  EXPECT_EQ(clrGreen, 0x00D200);
  EXPECT_EQ(clrYellow, 0x00F0F0);
  EXPECT_EQ(clrAmber, 0x00E6FF);
  EXPECT_EQ(clrMagenta, 0xFA00FA);
  EXPECT_EQ(clrCyan, 0xFFFF00);
}

TEST_F(ProgramState, ColourPartsAreClipped) {
  EXPECT_EQ(Rgb(4080, 255, 0), 0x00FFFF);
  EXPECT_EQ(Rgb(0, 0, 256), 0xFF0000);
  EXPECT_EQ(Rgb(-1, 1, 2), 0x020100);
}

}  // namespace
}  // namespace kestrel
