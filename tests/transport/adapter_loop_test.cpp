// The transfer loop: ticks, stops, faults between them.
// SPDX-License-Identifier: MIT
#include "transport/adapter_loop.h"
#include "support/given.h"

#include <random>

#include "debug_fixture.h"
#include "transport/adapter_choice.h"
#include "usb_registers.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kBlock = "0D 01 01 1C 00";

class AdapterLoopLogic : public DebugTest {
 protected:
  void SetUp() override {
    DebugTest::SetUp();
    Type({"1C00"});
  }

  // The timer's next tick; none once the loop has ended.
  void Tick(bool mayTransfer = true) {
    if (!view_.tick) return;
    clock_.Advance(*view_.tick);
    view_.tick.reset();
    loop_.Tick(mayTransfer);
  }
  void Ticks(int count) {
    for (int i = 0; i < count; ++i) Tick();
  }

  void ExpectStopped() {
    EXPECT_EQ(view_.caption, "Loop");
    EXPECT_TRUE(StopSpiLoop);
    EXPECT_FALSE(view_.tick.has_value());
    EXPECT_EQ(boards_.Opened(), boards_.Closed());
    const std::size_t sent = boards_.Sent().size();
    loop_.Tick(true);
    EXPECT_EQ(boards_.Sent().size(), sent) << "a late tick sends nothing";
  }

  UsbRegisters registers_{usb_};
  AdapterLoop loop_{debug_, clock_, messages_, view_};
};

TEST_F(AdapterLoopLogic, SendsOnceAtOnceAndThenWithEveryTick) {
  loop_.cmdLoop_Click();
  EXPECT_EQ(view_.caption, "Stop");
  EXPECT_FALSE(StopSpiLoop);
  EXPECT_THAT(boards_.Sent(), ElementsAre(kBlock));
  Ticks(3);
  EXPECT_THAT(boards_.Sent(), ElementsAre(kBlock, kBlock, kBlock, kBlock));
  EXPECT_EQ(clock_.Monotonic(), milliseconds{30});
  EXPECT_EQ(view_.transfers, 4);
}

TEST_F(AdapterLoopLogic, TheButtonStopsIt) {
  loop_.cmdLoop_Click();
  Ticks(2);
  loop_.cmdLoop_Click();
  ExpectStopped();
  loop_.cmdLoop_Click();
  EXPECT_EQ(view_.caption, "Stop") << "and starts it again";
}

TEST_F(AdapterLoopLogic, AnAdapterThatFailsStopsItWithOneMessage) {
  loop_.cmdLoop_Click();
  Ticks(2);
  boards_.FailAt(2);
  Ticks(5);
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Writing SPI"));
  EXPECT_EQ(view_.errors, 1);
  ExpectStopped();
}

TEST_F(AdapterLoopLogic, AnAdapterFoundLostStopsItWithoutAMessage) {
  loop_.cmdLoop_Click();
  boards_.boards.clear();
  EXPECT_TRUE(usb_.FindLost());
  Tick();
  EXPECT_THAT(messages_.Texts(), IsEmpty());
  ExpectStopped();
}

TEST_F(AdapterLoopLogic, PresenceThatFallsAnyOtherWayStopsItToo) {
  loop_.cmdLoop_Click();
  Given(UsbPresent) = false;
  Tick();
  ExpectStopped();
}

TEST_F(AdapterLoopLogic, ChoosingNoBoardStopsIt) {
  loop_.cmdLoop_Click();
  ChooseAdapter(usb_, registers_.access, files_, 4);
  Tick();
  ExpectStopped();
}

TEST_F(AdapterLoopLogic, HoweverLongTheWaitTheEndIsNoticedSoon) {
  view_.wait = "60000";
  loop_.cmdLoop_Click();
  EXPECT_EQ(view_.tick, milliseconds{100});
  Ticks(599);
  EXPECT_EQ(boards_.Sent().size(), 1U);
  Tick();
  EXPECT_EQ(boards_.Sent().size(), 2U);
  Given(StopSpiLoop) = true;
  Tick();
  ExpectStopped();
}

TEST_F(AdapterLoopLogic, WhileSomethingElseUsesTheSensorTheLoopWaits) {
  loop_.cmdLoop_Click();
  for (int i = 0; i < 50; ++i) Tick(false);
  EXPECT_EQ(boards_.Sent().size(), 1U);
  EXPECT_EQ(view_.caption, "Stop");
  Tick();
  EXPECT_EQ(boards_.Sent().size(), 2U);
}

TEST_F(AdapterLoopLogic, TheSameFramesGoOutThoughTheBufferServesOthersInBetween) {
  loop_.cmdLoop_Click();
  Type({"7777"});
  Given(SpiTx)(1) = 0x0A00;
  Tick();
  EXPECT_THAT(boards_.Sent(), ElementsAre(kBlock, kBlock));
}

TEST_F(AdapterLoopLogic, ANewWaitCountsFromTheNextTransferOnceItMakesSense) {
  loop_.cmdLoop_Click();
  view_.wait = "";
  Tick();
  EXPECT_EQ(view_.tick, milliseconds{10});
  view_.wait = "25";
  Tick();
  EXPECT_EQ(view_.tick, milliseconds{25});
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(AdapterLoopLogic, WithoutAnAdapterItDoesNotStart) {
  Given(UsbPresent) = false;
  loop_.cmdLoop_Click();
  EXPECT_THAT(messages_.Texts(), ElementsAre("Please Select a Buffer first"));
  EXPECT_TRUE(StopSpiLoop);
  ExpectStopped();
}

TEST_F(AdapterLoopLogic, WithAFaultyFrameItDoesNotStart) {
  Type({"1C00", "", "1"});
  loop_.cmdLoop_Click();
  EXPECT_EQ(messages_.Texts().size(), 1U);
  EXPECT_EQ(view_.pointedAt, 2);
  EXPECT_THAT(boards_.Log(), IsEmpty());
  ExpectStopped();
}

TEST_F(AdapterLoopLogic, AWaitThatIsNoneIsNamedAndNothingIsSent) {
  for (const char* text : {"", "0", "-5", "60001", "1.5", "ten", "1e99"}) {
    messages_.Clear();
    view_.wait = text;
    loop_.cmdLoop_Click();
    EXPECT_THAT(messages_.Texts(),
                ElementsAre("Loop: \"" + std::string(text) +
                            "\" is not a wait between transfers. Enter 1 to 60000 ms.\n"
                            "Nothing was sent."));
    ExpectStopped();
  }
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

// Whatever happens between the ticks of a loop, and whatever ends it, in any order.
TEST_F(AdapterLoopLogic, RandomLoopsEndCleanlyHoweverTheyAreStopped) {
  std::mt19937 random(20260101);
  const auto choice = [&](unsigned below) { return static_cast<int>(random() % below); };
  std::array<int, 6> endings{};
  for (int run = 0; run < 300; ++run) {
    boards_.boards[0] = {};
    messages_.Clear();
    ASSERT_TRUE(ChooseAdapterAgain(usb_, registers_.access, files_));
    boards_.ClearLog();
    view_.wait = std::to_string(1 + choice(300));
    loop_.cmdLoop_Click();
    ASSERT_EQ(view_.caption, "Stop");
    for (int i = choice(30); i > 0; --i) {
      Tick(choice(4) != 0);
      if (choice(5) == 0) Given(SpiTx)(1) = 0x0A00;
    }
    const int ending = choice(6);
    ++endings[static_cast<std::size_t>(ending)];
    const bool fails = ending == 1 || ending == 2;
    if (ending == 0) loop_.cmdLoop_Click();
    if (fails) boards_.FailAt(ending == 1 ? 1 : 3);
    if (ending == 3) {
      boards_.boards.clear();
      EXPECT_TRUE(usb_.FindLost());
    }
    if (ending == 4) ChooseAdapter(usb_, registers_.access, files_, 9);
    if (ending == 5) loop_.Stop();
    for (int i = 0; i < 4 && view_.tick; ++i) Tick();
    EXPECT_EQ(messages_.Texts().size(), fails ? 1U : 0U) << "run " << run;
    ExpectStopped();
    for (const std::string& block : boards_.Sent()) EXPECT_EQ(block, kBlock);
  }
  for (const int count : endings) EXPECT_GT(count, 20) << "every ending took its turn";
}

TEST_F(AdapterLoopLogic, MemoryStaysBoundedHoweverLongItRuns) {
  view_.wait = "1";
  loop_.cmdLoop_Click();
  const int most = static_cast<int>(WireLog::kMostEntries);
  for (int i = 0; i < most + 99; ++i) {
    Tick();
    boards_.ClearLog();
  }
  EXPECT_EQ(debug_.Log().Entries().size(), WireLog::kMostEntries);
  EXPECT_EQ(debug_.Log().Dropped(), 100);
  EXPECT_EQ(view_.transfers, most + 100);
}

}  // namespace
}  // namespace kestrel
