// A fault at the transfers of a capture that the analyser asked for.
// SPDX-License-Identifier: MIT
#include "ui/machine/severity_panel.h"
#include "ui/window_faults_bench.h"

namespace kestrel {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

class AnalyserFaults : public FaultBench {
 protected:
  // The analyser is open and shows a record.
  void Open() {
    StartQuietly();
    OpenWindow("mnuAnalyser");
    CaptureWell();
  }
  void Capture() {
    Bound();
    if (!option_) return Click("frmAnalyser", "cmdCapture");
    emit In<SeverityPanel>("frmAnalyser", "severityPanel").OptionWanted(*option_);
    Settle();
  }
  // Returns how many transfers it took.
  int CaptureWell() {
    Choose("cbxFFTAvgs", 1);
    const Record before = core_.record.Get();
    usb_.FailFrom(0);
    Capture();
    const int requests = usb_.Requests();
    EXPECT_THAT(messages_.Texts(), IsEmpty());
    EXPECT_NE(core_.record.Get(), before);
    EXPECT_FALSE(AnalyserSays(kLost));
    ExpectIdle();
    return requests;
  }
  void FailAt(UsbFault fault, int number) {
    const Record before = core_.record.Get();
    Let(fault, number);
    Capture();
    if (usb_.Met() == UsbRequest::None) return;  // that transfer cannot have this fault
    ++met_;
    EXPECT_THAT(messages_.Texts(), ElementsAre(AnyOf("Error Reading SPI", "Error Writing SPI")));
    EXPECT_FALSE(core_.registers.Reachable());
    ExpectIdle();  // and the analyser shows the record at hand
    EXPECT_TRUE(AnalyserSays(kLost));
    ExpectOneRecord(before);
    messages_.Clear();
  }
  // The one before, or a new one; never words of both.
  void ExpectOneRecord(const Record& before) {
    const Record& now = core_.record.Get();
    if (now == before) return;
    EXPECT_TRUE(now.IsNew());
    constexpr int kEnd = 16;
    for (const Axis axis : kAxes) {
      const auto are = now.Of(axis).raw.First(now.Points());
      const auto were = before.Of(axis).raw.First(now.Points());
      EXPECT_FALSE(std::ranges::equal(are.first(kEnd), were.first(kEnd))) << Letter(axis);
      EXPECT_FALSE(std::ranges::equal(are.last(kEnd), were.last(kEnd))) << Letter(axis);
    }
  }
  void PlugInAgain() {
    usb_.Mend();
    hardware_.Adapter().Unplug(0);
    hardware_.Adapter().Replug(0);
    Bound();
    Find<QPushButton>("cmdLostRetry").click();
    ASSERT_TRUE(core_.registers.Reachable());
  }

  // All at either end, where settings, status and conditions go over the road; of the words of the
  // buffers between them, which are read one like the other, every so many.
  static std::vector<int> Places(int requests) {
    constexpr int kEnds = 50;
    constexpr int kStride = 97;
    std::vector<int> places;
    for (int k = 1; k <= requests; ++k) {
      if (k <= kEnds || k > requests - kEnds || k % kStride == 0) places.push_back(k);
    }
    return places;
  }

  int met_ = 0;                // faults
  std::optional<int> option_;  // a card of the analyser asks for a capture at this one

  static constexpr const char* kLost = "The sensor was lost since";
};

TEST_F(AnalyserFaults, UnpluggedAtATransferItKeepsOneRecordAndSaysThatTheSensorWasLost) {
  Open();
  const int requests = CaptureWell();
  ASSERT_GT(requests, 10);
  for (const int number : Places(requests)) {
    const testing::ScopedTrace where(__FILE__, __LINE__, number);
    FailAt(UsbFault::Unplugged, number);
    PlugInAgain();
    if (number % 8 == 0) CaptureWell();
    if (HasFailure()) return;
  }
  EXPECT_EQ(met_, static_cast<int>(Places(requests).size()));
}

TEST_F(AnalyserFaults, WhateverElseLosesTheSensorIsSaidTooAndTheNextCaptureIsWhole) {
  Open();
  const int requests = CaptureWell();
  for (const UsbFault fault : {UsbFault::Absent, UsbFault::Short, UsbFault::Late}) {
    met_ = 0;
    for (const int number :
         {7, 8, 9, 10, requests / 3, requests / 3 + 1, requests - 9, requests - 8}) {
      const testing::ScopedTrace where(
          __FILE__, __LINE__,
          std::to_string(static_cast<int>(fault)) + " at " + std::to_string(number));
      FailAt(fault, number);
      PlugInAgain();
      CaptureWell();
      if (HasFailure()) return;
    }
    EXPECT_GE(met_, 3);
  }
}

TEST_F(AnalyserFaults, ACaptureAtAnotherOptionThatIsLostOnTheWayIsSaidAndCanBeAskedForAgain) {
  constexpr int kOption = 2;
  constexpr int kWithSettings = 80;  // transfers: the option goes over the road, then the capture
  Open();
  option_ = kOption;
  for (int number = 1; number <= kWithSettings; ++number) {
    const testing::ScopedTrace where(__FILE__, __LINE__, number);
    Click("frm1", "ckBW0");
    FailAt(UsbFault::Unplugged, number);
    PlugInAgain();
    if (number % 8 == 0) {
      CaptureWell();
      EXPECT_EQ(core_.record.Get().settings.option, kOption);
    }
    if (HasFailure()) return;
  }
  EXPECT_EQ(met_, kWithSettings);
}

}  // namespace
}  // namespace kestrel
