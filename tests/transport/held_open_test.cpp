// Blocks of frames over the adapter, and a board that is opened once for many of them.
// SPDX-License-Identifier: MIT
#include <array>

#include "regmap/register_table.h"
#include "support/fake_clock.h"
#include "support/recording_pointer.h"
#include "support/unused_hardware.h"
#include "transport/register_access.h"
#include "usb_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAre;

constexpr const char* kOpen = "open \\\\.\\Ezusb-0 40000000 2 3";

class HeldOpen : public UsbTest {
 protected:
  HeldOpen() {
    delay_.SkipCalibration();
    BuildRegisterTable();
    registers_.Use(kUsbAdapter);
  }
  ~HeldOpen() override {
    ResetDelayState();
    ResetRegisterTable();
    ResetRegisterAccessState();
  }
  void SetUp() override {
    SelectABoard();
    boards_.answersZeros = true;
    before_ = boards_.Opened();
  }
  // Since the board was selected.
  [[nodiscard]] int Opened() const { return boards_.Opened() - before_; }
  [[nodiscard]] int Closed() const { return boards_.Closed() - before_; }

  UnusedPort pins_;
  FakeClock clock_;
  RecordingPointer pointer_;
  SoftwareDelay delay_{clock_, pointer_};
  ParallelPort port_{pins_, delay_};
  RegisterAccess registers_{usb_, port_, delay_};

 private:
  int before_ = 0;
};

TEST_F(HeldOpen, ABlockIsOneTransferAndBringsAWordForEachFrame) {
  boards_.answers = {{0xDE, 0xAD, 0x12, 0x34, 0x56, 0x78}};
  std::array<std::int32_t, 3> answers{};
  EXPECT_TRUE(registers_.Exchange(std::array{0x1400, 0x1600, 0x1800}, answers));
  EXPECT_THAT(boards_.Log(),
              ElementsAre(kOpen, "send 0D 01 03 14 00 16 00 18 00", "receive 6", "close"));
  EXPECT_THAT(answers, ElementsAre(0xDEAD, 0x1234, 0x5678));
  EXPECT_EQ(LptWord, 0x5678);
  EXPECT_THAT(clock_.Waits(), ElementsAre(std::chrono::microseconds{100}));
}

TEST_F(HeldOpen, AWordOfABlockIsDecodedAndLeftAsARead) {
  const Reading reading = registers_.Keep(row::X_NULL, 0xFFFE);
  EXPECT_EQ(reading.value, -2);
  EXPECT_EQ(RegValue, -2);
  EXPECT_EQ(RegHighByte, 0xFF);
  EXPECT_EQ(RegLowByte, 0xFE);
}

TEST_F(HeldOpen, ABlockThatFailsLeavesTheAnswersAndCountsAsALostBoard) {
  std::array<std::int32_t, 2> answers{7, 8};
  boards_.FailAt(3);
  EXPECT_FALSE(registers_.Exchange(std::array{0x1400, 0x1600}, answers));
  EXPECT_THAT(answers, ElementsAre(7, 8));
  EXPECT_FALSE(UsbPresent);
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Reading SPI"));
}

TEST_F(HeldOpen, WithoutAnInterfaceABlockIsRefused) {
  registers_.Use(kNoInterface);
  std::array<std::int32_t, 1> answers{7};
  EXPECT_FALSE(registers_.Exchange(std::array{0x1400}, answers));
  EXPECT_EQ(registers_.LastOutcome().Why().what, "No interface is selected.");
}

TEST_F(HeldOpen, AccessesInBetweenDoNotOpenTheBoardAgain) {
  {
    const RegisterAccess::HeldOpen held(registers_);
    EXPECT_EQ(Opened(), 0) << "nothing has been sent yet";
    EXPECT_TRUE(registers_.Read(row::REC_CTRL));
    EXPECT_TRUE(registers_.Write(row::REC_CTRL, 1));
    EXPECT_TRUE(usb_.UsbSetupSpi(25));
    EXPECT_TRUE(usb_.UsbReadSettings());
    EXPECT_EQ(Opened(), 1);
    EXPECT_EQ(Closed(), 0);
  }
  EXPECT_EQ(Closed(), 1);
  registers_.Read(row::REC_CTRL);
  EXPECT_EQ(Opened(), 2);
  EXPECT_EQ(Closed(), 2);
}

TEST_F(HeldOpen, ABoardThatFailsIsClosedBeforeTheMessageShows) {
  const RegisterAccess::HeldOpen held(registers_);
  registers_.Read(row::REC_CTRL);
  int closedAtTheMessage = -1;
  messages_.WhileShown([&] { closedAtTheMessage = Closed(); });
  boards_.FailAt(1);
  EXPECT_FALSE(registers_.Read(row::REC_CTRL));
  EXPECT_EQ(closedAtTheMessage, 1);
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Writing SPI"));
}

TEST_F(HeldOpen, AnotherChoiceClosesIt) {
  const RegisterAccess::HeldOpen held(registers_);
  registers_.Read(row::REC_CTRL);
  usb_.SelectAdapter(0);
  EXPECT_EQ(Closed(), 1);
}

TEST_F(HeldOpen, ASearchFindsTheBoardThatWasHeld) {
  const RegisterAccess::HeldOpen held(registers_);
  registers_.Read(row::REC_CTRL);
  usb_.FindAdapters();
  EXPECT_EQ(AdapterCount, 1);
  EXPECT_EQ(Opened(), Closed());
}

TEST_F(HeldOpen, ABoardThatDoesNotOpenIsTriedOnceAndNotHeld) {
  const RegisterAccess::HeldOpen held(registers_);
  boards_.FailAt(1);
  EXPECT_FALSE(registers_.Read(row::REC_CTRL));
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Writing SPI"));
  EXPECT_EQ(Opened(), 0);
}

TEST_F(HeldOpen, TakingAnInterfaceIsCounted) {
  const int before = registers_.Connections();
  registers_.Use(kUsbAdapter);
  EXPECT_EQ(registers_.Connections(), before + 1);
}

}  // namespace
}  // namespace kestrel
