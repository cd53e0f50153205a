// The status flags read, shown and cleared.
// SPDX-License-Identifier: MIT
#include "acquisition/status.h"

#include "support/capture_bench.h"

namespace kestrel {
namespace {

constexpr double kGreen = 0x00D200;
constexpr double kYellow = 0x00F0F0;
constexpr double kRed = 0x0000E6;

struct Flag {
  const char* name;
  const char* whenSet;
  double colour;
};
const std::array<Flag, 15> kFlags{{{"Supply < 3.150 V", "FAIL", kRed},
                                   {"Supply > 3.625 V", "FAIL", kRed},
                                   {"Flash Update Failure", "FAIL", kRed},
                                   {"SPI Comm Failure", "FAIL", kRed},
                                   {"Recording Esc. Flag", "FAIL", kRed},
                                   {"Self-test Diagnostic", "FAIL", kRed},
                                   {"Flash Memory Failure", "FAIL", kRed},
                                   {"Data Ready", "SET", kYellow},
                                   {"X axis Alarm 1", "SET", kYellow},
                                   {"Y axis Alarm 1", "SET", kYellow},
                                   {"Z axis Alarm 1", "SET", kYellow},
                                   {"X axis Alarm 2", "SET", kYellow},
                                   {"Y axis Alarm 2", "SET", kYellow},
                                   {"Z axis Alarm 2", "SET", kYellow},
                                   {"System Alarm", "SET", kYellow}}};

class Status : public CaptureBench {
 protected:
  // Every flag shows what its bit of `shown` asks for, and nothing else is shown.
  void ExpectShown(int shown) const {
    ASSERT_EQ(statusView.flags.size(), 15U);
    ASSERT_EQ(statusView.names.size(), 15U);
    for (std::size_t bit = 0; bit < 15; ++bit) {
      SCOPED_TRACE(bit);
      const int number = static_cast<int>(bit);
      const bool isSet = (shown >> bit & 1) != 0;
      EXPECT_EQ(statusView.names.at(number), kFlags[bit].name);
      EXPECT_EQ(statusView.flags.at(number), isSet ? kFlags[bit].whenSet : "OK");
      EXPECT_EQ(statusView.colours.at(number), isSet ? kFlags[bit].colour : kGreen);
      EXPECT_EQ(StatusFlagText[bit], statusView.flags.at(number));
    }
  }
};

TEST_F(Status, NoFlagIsFifteenGreenOk) {
  status.ReadStatus("CmdReadStatus");
  ExpectShown(0);
}

TEST_F(Status, EachBitShowsAtItsFlag) {
  for (int bit = 0; bit < 15; ++bit) {
    SCOPED_TRACE(bit);
    sensor.Set(address::kStatus, 1 << bit);
    status.ReadStatus("CmdReadStatus");
    ExpectShown(1 << bit);
  }
}

TEST_F(Status, Bit15ChangesNothing) {
  sensor.Set(address::kStatus, 0x8000);
  status.ReadStatus("CmdReadStatus");
  ExpectShown(0);
}

TEST_F(Status, TheSpiFailureIsHiddenAfterACaptureOnly) {
  sensor.Set(address::kStatus, 0x0088);
  status.ReadStatus("cmdStart");
  ExpectShown(0x0080);
  for (const char* caller : {"CmdReadStatus", "cmdstart", ""}) {
    SCOPED_TRACE(caller);
    status.ReadStatus(caller);
    ExpectShown(0x0088);
  }
}

TEST_F(Status, OnlyBit3IsHiddenAfterACapture) {
  sensor.Set(address::kStatus, 0xFFFF);
  status.ReadStatus("cmdStart");
  ExpectShown(0x7FF7);
}

TEST_F(Status, PeaksAreReadBeforeTheStatusWord) {
  status.ReadStatus("CmdReadStatus");
  EXPECT_EQ(TakeFrames(), StatusFrames());
  EXPECT_EQ(journal.Entries(), (Words{"peak X", "peak Y", "peak Z", "status flags"}));
  EXPECT_EQ(loop.Paints(), 1);
}

TEST_F(Status, ClearingSendsTheCommandFirst) {
  status.ClearStatus("cmdClearStatus");
  EXPECT_EQ(TakeFrames(), Frames{kClearStatusFrame} + StatusFrames());
}

TEST_F(Status, ClearingHandsItsCallerOn) {
  sensor.Set(address::kStatus, 0x0008);
  status.ClearStatus("cmdStart");
  ExpectShown(0);
  status.ClearStatus("cmdClearStatus");
  ExpectShown(8);
}

TEST_F(Status, ALostSensorKeepsTheFlags) {
  sensor.Set(address::kStatus, 0x0101);
  status.ReadStatus("CmdReadStatus");
  for (int k = 1; k <= 3 * 7; ++k) {
    SCOPED_TRACE(k);
    sensor.Set(address::kStatus, 0x7F00);
    sensor.UnplugAtRequest(k);
    messages.Clear();
    status.ReadStatus("CmdReadStatus");
    EXPECT_EQ(messages.Texts().size(), 1U);
    ExpectShown(0x0101);
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
  }
}

}  // namespace
}  // namespace kestrel
