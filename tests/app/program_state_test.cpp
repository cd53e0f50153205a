// Every program-wide name has its start value and comes back to it.
// SPDX-License-Identifier: MIT
#include "app/program_state.h"

#include <gtest/gtest.h>

#include "support/given.h"

namespace kestrel {
namespace {

class ProgramState : public testing::Test {
 protected:
  ProgramState() { ResetProgramState(); }
  ~ProgramState() override { ResetProgramState(); }

  static void SetEverythingElsewhere() {
    Given(InterfaceType) = kUsbAdapter;
    Given(PortAddress) = 888;
    Given(ProductNumber) = kProduct31407;
    for (const double* colour :
         {&clrRed, &clrGreen, &clrYellow, &clrAmber, &clrMagenta, &clrCyan}) {
      Given(*colour) = 1;
    }
  }
};

TEST_F(ProgramState, ResetRestoresEveryName) {
  SetEverythingElsewhere();
  ResetProgramState();
  EXPECT_EQ(InterfaceType, kNoInterface);
  EXPECT_EQ(PortAddress, 0);
  EXPECT_EQ(ProductNumber, 0);
  for (const double colour : {clrRed, clrGreen, clrYellow, clrAmber, clrMagenta, clrCyan}) {
    EXPECT_EQ(colour, 0);
  }
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
