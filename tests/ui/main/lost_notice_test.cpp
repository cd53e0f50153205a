// The adapter in use is unplugged and comes back.
// SPDX-License-Identifier: MIT
// The adapter in use is unplugged and comes back.

#include "ui/main/lost_notice.h"
#include "support/given.h"

#include <QSignalSpy>

#include "connection/init_interface.h"
#include "ui/main/adapter_watcher.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

// The strip and the watch by themselves, with an edge of their own.
class LostAdapter : public WindowBench {
 protected:
  LostAdapter() {
    core_.registers.Use(kUsbAdapter);
    InitInterface(core_);
    watcher_.Begin();
    QObject::connect(&watcher_, &AdapterWatcher::Lost, &notice_, &LostNotice::Refresh);
  }

  // Unplugs the board and lets the watch find out by itself.
  void Lose() {
    hardware_.Adapter().Unplug(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !notice_.isHidden(); }));
  }
  QLabel& Label(const char* name) { return *notice_.findChild<QLabel*>(name); }
  void PressIt(const char* name) {
    notice_.findChild<QPushButton*>(name)->click();
    notice_.Refresh();
  }

  bool idle_ = true;
  HandlerEdge edge_{messages_,
                    {.busy = [] { return false; },
                     .refused = [] {},
                     .after = [this] { notice_.Refresh(); },
                     .idle = [this] { return idle_; }}};
  LostNotice notice_{core_, edge_};
  AdapterWatcher watcher_{core_, edge_, nullptr};
};

TEST_F(LostAdapter, IsNoticedByItselfWithoutAnyMessage) {
  notice_.Refresh();
  EXPECT_TRUE(notice_.isHidden());
  const QSignalSpy lost(&watcher_, &AdapterWatcher::Lost);
  Lose();
  EXPECT_FALSE(UsbPresent);
  EXPECT_EQ(Label("lblLost").text(),
            "The USB adapter has been lost. What is on the screen is what was read last.");
  EXPECT_TRUE(Label("lblLostReason").isHidden());
  usb_.FailFrom(0);
  watcher_.Look();
  EXPECT_EQ(usb_.Requests(), 0) << "what is lost is not asked for again and again";
  EXPECT_EQ(lost.count(), 1);
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(LostAdapter, TheWatchDoesNotTouchTheDevice) {
  usb_.FailFrom(0);
  watcher_.Look();
  EXPECT_EQ(usb_.Requests(), 0);
  EXPECT_TRUE(UsbPresent);
}

TEST_F(LostAdapter, TheWatchRestsWhileAHandlerRuns) {
  hardware_.Adapter().Unplug(0);
  edge_.Run("test", [this] { watcher_.Look(); });
  EXPECT_TRUE(UsbPresent);
  watcher_.Look();
  EXPECT_FALSE(UsbPresent);
}

TEST_F(LostAdapter, WhatHappensWhileAHandlerRunsIsSeenAfterIt) {
  edge_.Run("test", [this] {
    hardware_.Adapter().Unplug(0);
    QTest::qWait(150);  // the system's message and a look after it
    EXPECT_TRUE(UsbPresent);
  });
  EXPECT_TRUE(QTest::qWaitFor([] { return !UsbPresent; }));
}

TEST_F(LostAdapter, NobodyLooksWhileNothingIsPluggedInOrOut) {
  EXPECT_FALSE(watcher_.Polls());
  const int before = usb_.Looks();
  QTest::qWait(1200);
  EXPECT_EQ(usb_.Looks(), before);
  Lose();
  EXPECT_GT(usb_.Looks(), before);
}

TEST_F(LostAdapter, WhereTheSystemDoesNotTellTheWatchLooksNowAndThen) {
  usb_.TellNothing();
  AdapterWatcher blind(core_, edge_, nullptr);
  EXPECT_TRUE(blind.Polls());
  const QSignalSpy lost(&blind, &AdapterWatcher::Lost);
  hardware_.Adapter().Unplug(0);
  EXPECT_TRUE(QTest::qWaitFor([] { return !UsbPresent; }));
  EXPECT_EQ(lost.count(), 1);
}

TEST_F(LostAdapter, TheWatchIsForUsbOnly) {
  core_.registers.Use(kParallelPort);
  hardware_.Adapter().Unplug(0);
  watcher_.Look();
  EXPECT_TRUE(UsbPresent);
}

TEST_F(LostAdapter, WhatWasReadLastStays) {
  std::int16_t address = 0x1C;
  core_.registers.ReadRegWord(address);
  const std::int32_t word = SpiRx(2);
  ASSERT_NE(word, 0);
  Lose();
  EXPECT_EQ(SpiRx(2), word);
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-0");
}

TEST_F(LostAdapter, WhileACaptureIsWaitedForNoOtherTryIsMade) {
  Lose();
  hardware_.Adapter().Replug(0);
  idle_ = false;
  PressIt("cmdLostRetry");
  EXPECT_FALSE(UsbPresent);
  idle_ = true;
  PressIt("cmdLostRetry");
  EXPECT_TRUE(UsbPresent);
}

TEST_F(LostAdapter, TryingAgainInVainSaysWhyInTheStrip) {
  Lose();
  PressIt("cmdLostRetry");
  notice_.Refresh();
  EXPECT_FALSE(notice_.isHidden());
  EXPECT_FALSE(Label("lblLostReason").isHidden());
  EXPECT_EQ(Label("lblLostReason").text(),
            "No adapter is attached. Plug the board in, then try again.");
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(LostAdapter, TryingAgainAfterRepluggingTakesTheAdapterBack) {
  const QSignalSpy chosen(&notice_, &LostNotice::InterfaceChosen);
  Lose();
  PressIt("cmdLostRetry");
  hardware_.Adapter().Replug(0);
  PressIt("cmdLostRetry");
  EXPECT_EQ(chosen.count(), 1);
  EXPECT_TRUE(core_.registers.Reachable());
  notice_.Refresh();
  EXPECT_TRUE(notice_.isHidden());
  EXPECT_TRUE(messages_.Texts().empty());
  Lose();
  EXPECT_TRUE(Label("lblLostReason").isHidden()) << "an earlier reason is not told again";
}

TEST_F(LostAdapter, TheStripStaysWhenACaptureSearchesInVain) {
  Lose();
  InitInterface(core_);
  EXPECT_EQ(InterfaceType, kNoInterface);
  EXPECT_EQ(messages_.Texts().size(), 1U);
  notice_.Refresh();
  EXPECT_FALSE(notice_.isHidden());
  hardware_.Adapter().Replug(0);
  PressIt("cmdLostRetry");
  notice_.Refresh();
  EXPECT_TRUE(notice_.isHidden());
}

TEST_F(LostAdapter, ALossThatARequestMeetsShowsAsWell) {
  usb_.FailFrom(1);
  core_.usb.UsbSpiTransfer(1);
  EXPECT_EQ(messages_.Texts().size(), 1U);
  notice_.Refresh();
  EXPECT_FALSE(notice_.isHidden());
}

TEST_F(LostAdapter, SelectingIsAskedForByTheButton) {
  const QSignalSpy wanted(&notice_, &LostNotice::SelectWanted);
  PressIt("cmdLostSelect");
  EXPECT_EQ(wanted.count(), 1);
}

TEST_F(LostAdapter, NoInterfaceFromTheStartIsNoLoss) {
  core_.registers.Use(kNoInterface);
  Given(UsbPresent) = false;
  notice_.Refresh();
  EXPECT_TRUE(notice_.isHidden());
}

}  // namespace
}  // namespace kestrel
