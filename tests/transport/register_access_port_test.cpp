// Registers over the parallel port: the same frames, one transaction each.
// SPDX-License-Identifier: MIT
// Registers over the parallel port: the same frames, one chip-select transaction each.

#include "numeric/runtime_error.h"
#include "port_fixture.h"
#include "regmap/register_table.h"
#include "support/recording_boards.h"
#include "support/recording_messages.h"
#include "transport/register_access.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RegistersOverPort : public PortTest {
 protected:
  RegistersOverPort() {
    ResetRegisterAccessState();
    BuildRegisterTable();
    registers_.Use(kParallelPort);
  }
  ~RegistersOverPort() override {
    EXPECT_THAT(boards_.Log(), IsEmpty());
    ResetRegisterAccessState();
    ResetRegisterTable();
  }

  // The frames on the pins, in order: each ends with all lines released.
  [[nodiscard]] std::vector<int> Frames() const {
    std::vector<int> frames;
    std::vector<std::string> current;
    for (const std::string& pin : pins_.Log()) {
      current.push_back(pin);
      if (pin != "0") continue;
      frames.push_back(FrameOnPins(current));
      current.clear();
    }
    return frames;
  }

  RecordingBoards boards_;
  RecordingMessages messages_;
  UsbAdapter usb_{boards_, messages_};
  RegisterAccess registers_{usb_, port_, delay_};
};

TEST_F(RegistersOverPort, WriteIsTwoFrames) {
  registers_.WriteReg(row::REC_CTRL, 0x1234);
  EXPECT_THAT(Frames(), ElementsAre(0x9D12, 0x9C34));
  EXPECT_THAT(clock_.Waits(),
              ElementsAre(std::chrono::microseconds{100}, std::chrono::microseconds{100},
                          std::chrono::microseconds{100}));
}

TEST_F(RegistersOverPort, CommandIsOneFrame) {
  registers_.WriteReg(row::COMMAND, 0x0800);
  EXPECT_THAT(Frames(), ElementsAre(0xBF08));
}

TEST_F(RegistersOverPort, ReadIsACommandAndAFrameThatChangesNothing) {
  pins_.Answer(0xFFFE);
  registers_.ReadReg(row::X_NULL);
  EXPECT_EQ(RegValue, -2);
  EXPECT_EQ(RegHighByte, 0xFF);
  EXPECT_EQ(RegLowByte, 0xFE);
  EXPECT_EQ(LptWord, 0xFFFE);
  EXPECT_THAT(Frames(), ElementsAre(0x0200, 0x0000));
  EXPECT_EQ(clock_.Waits().size(), 3U);
}

TEST_F(RegistersOverPort, ABlockIsOneFrameAfterTheOtherEachWithItsAnswer) {
  pins_.Answer(0x1234);
  std::array<std::int32_t, 3> answers{};
  EXPECT_TRUE(registers_.Exchange(std::array{0x9001, 0x1400, 0x1600}, answers));
  EXPECT_THAT(Frames(), ElementsAre(0x9001, 0x1400, 0x1600));
  EXPECT_THAT(answers, ElementsAre(0x1234, 0x1234, 0x1234));
  EXPECT_EQ(LptWord, 0x1234);
  EXPECT_EQ(clock_.Waits().size(), 4U);
}

TEST_F(RegistersOverPort, ABlockOverAPortThatIsNotHeldFailsAndTouchesNoPin) {
  pins_.held = false;
  std::array<std::int32_t, 1> answers{77};
  EXPECT_FALSE(registers_.Exchange(std::array{0x1400}, answers));
  EXPECT_EQ(answers[0], 77);
  EXPECT_EQ(registers_.LastOutcome().Why().what, "The parallel port is not held.");
  EXPECT_THAT(Frames(), IsEmpty());
  EXPECT_EQ(pins_.Log().size(), 1U) << "but the wait";
}

TEST_F(RegistersOverPort, UnreadableRowLeavesThePinsAlone) {
  registers_.ReadReg(row::SCRATCH_B);
  EXPECT_THAT(pins_.Log(), IsEmpty());
}

TEST_F(RegistersOverPort, PortIsUsableOnceSelected) {
  EXPECT_TRUE(registers_.Reachable());
}

}  // namespace
}  // namespace kestrel
