// Captures without an interface or an adapter, with bad modes, and logs that fail.
// SPDX-License-Identifier: MIT

#include "acquisition/capture_cycle_bench.h"

namespace kestrel {
namespace {

TEST_F(Capture, ABadModeIsNamedAndTheCaptureGoesOnAsBefore) {
  readoutView.autoPlot = false;
  ReadyAtPoll(1);
  captureView.recMode = 2;
  cycle.cmdStart_Click();
  for (const int mode : {-1, 3}) {
    SCOPED_TRACE(mode);
    messages.Clear();
    TakeFrames();
    ReadyAtPoll(1);
    readoutView.autoPlot = true;
    captureView.recMode = mode;
    cycle.cmdStart_Click();
    EXPECT_EQ(messages.Texts(),
              Words{"ERROR.\nSubroutine = ReadCaptureBuffer\nMe.cbxRecMode.ListIndex = " +
                    std::to_string(mode) + "\nValid values are  = 0,1,2"});
    EXPECT_EQ(TakeFrames(),
              WaitFrames(1) + ReadoutFrames(511) + AlarmStatusFrames() + AlarmStatusFrames());
    EXPECT_EQ(CaptureType, "TimeDomain");
    EXPECT_TRUE(RegSigned[row::Y_BUF]);
    EXPECT_TRUE(WindowIsIdle());
  }
}

TEST_F(Capture, AnUnknownCaptionIsNamedAndBecomesStop) {
  captureView.caption = "start";
  captureView.capturingShown = true;
  cycle.cmdStart_Click();
  EXPECT_EQ(messages.Texts(), Words{"unknown caption cmdStart"});
  EXPECT_EQ(captureView.caption, "Stop");
  EXPECT_FALSE(captureView.capturingShown);
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(Capture, WithoutAnInterfaceTheUserIsAskedForOne) {
  core.registers.Use(kNoInterface);
  cycle.cmdStart_Click();
  EXPECT_EQ(messages.Texts(), Words{"Please select an interface before taking data"});
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_TRUE(WindowIsIdle());
  EXPECT_EQ(loop.Intervals(), Intervals{});
}

TEST_F(Capture, ALostAdapterIsSearchedAgainByTheNextPress) {
  Given(UsbPresent) = false;
  ReadyAtPoll(1);
  cycle.cmdStart_Click();
  EXPECT_TRUE(messages.Texts().empty());
  EXPECT_EQ(RawX(0), 1000);
}

TEST_F(Capture, TheControlRegisterIsReadAgainOnceTheAdapterIsFound) {
  sensor.Set(address::kRecCtrl, 0x0320);
  Given(UsbPresent) = false;
  ReadyAtPoll(1);
  cycle.cmdStart_Click();
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kRecCtrl) + WaitFrames(1) + ReadoutFrames(255) +
                              AlarmStatusFrames() + AlarmStatusFrames());
  EXPECT_EQ(gRecCtrl->SampleRate(), 3);
  EXPECT_EQ(loop.Intervals(), (Intervals{390ms, 50ms})) << "the wait follows the rate read";
  EXPECT_EQ(DataX(0), 1000 * 0.0003052) << "the scale follows the range read";
}

TEST_F(Capture, AnAdapterThatIsThereNeedsNoSecondLook) {
  ReadyAtPoll(1);
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  EXPECT_EQ(sensor.Count(address::kRecCtrl * 256), 0);
}

TEST_F(Capture, AnAdapterLostAgainBeforeTheControlRegisterIsReadStartsNothing) {
  const int before = sensor.Requests();
  InitInterface(core);
  const int requestsOfTheSearch = sensor.Requests() - before;
  TakeFrames();
  Given(UsbPresent) = false;
  sensor.UnplugAtRequest(requestsOfTheSearch + 1);
  cycle.cmdStart_Click();
  EXPECT_EQ(messages.Texts(), Words{"Error Writing SPI"});
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Capture, AnAdapterThatIsStillMissingIsNamedOnce) {
  Given(UsbPresent) = false;
  sensor.UnplugAtRequest(1);
  cycle.cmdStart_Click();
  EXPECT_EQ(messages.Texts(), Words{"No USB Buffers Found, Please Verify Setup."});
  EXPECT_EQ(InterfaceType, kNoInterface);
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Capture, TheWaitIsAnIntegerProductThatMayOverflow) {
  gRecCtrl->SampleRate(3277);
  EXPECT_THROW(cycle.cmdStart_Click(), RuntimeError);
  EXPECT_TRUE(WindowIsIdle());
  gRecCtrl->SampleRate(0);
  ReadyAtPoll(1);
  cycle.cmdStart_Click();
  EXPECT_EQ(RawX(0), 1000);
}

TEST_F(Capture, ALogThatCannotBeWrittenEndsTheCaptureCleanly) {
  ReadyAtPoll(1);
  readoutView.dataLog = true;
  files.failure = "No space left on device";
  EXPECT_THROW(cycle.cmdStart_Click(), RuntimeError);
  EXPECT_TRUE(WindowIsIdle());
  EXPECT_EQ(RawX(0), 1000);
}

TEST_F(Capture, ReadingTheBuffersWithoutAnInterfaceAsksForOne) {
  core.registers.Use(kNoInterface);
  cycle.cmdReadBuffer_Click();
  EXPECT_EQ(messages.Texts(), Words{"Please select an interface before taking data"});
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_EQ(journal.Entries(), Words{});
}

}  // namespace
}  // namespace kestrel
