// A wide spectrum over a station: all options in one go, and the settings back whatever happens.
// SPDX-License-Identifier: MIT
#include "station/wide_capture.h"

#include <algorithm>
#include <array>
#include <span>

#include "device/rec_ctrl.h"
#include "device/register_models.h"
#include "station_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::int32_t kRecCtrl = 0x1120;  // option 1, 20 g, Hanning, manual
constexpr std::int32_t kAverages = 3;

class WideCaptureTest : public StationBench {
 protected:
  WideCaptureTest() {
    Station& station = Connected();
    EXPECT_TRUE(station.WriteRegister("REC_CTRL", kRecCtrl));
    EXPECT_TRUE(station.WriteRegister("FFT_AVG", kAverages));
  }
  WideCaptured Taken(const WideCaptureWish& wish = {}) {
    WideCapture capture(TheStation(), wish);
    capture.OnRecord([this](const Record& record) { order.push_back(record.settings.option); });
    capture.OnProgress([this](const WideProgress& now) { progress.push_back(now); });
    return capture.Run();
  }
  std::int32_t Word(const char* name) {
    const auto value = TheStation().ReadRegister(name);
    EXPECT_TRUE(value) << name;
    return value ? value->value : -1;
  }
  void ExpectSettingsBack() {
    EXPECT_EQ(Word("REC_CTRL"), kRecCtrl);
    EXPECT_EQ(Word("FFT_AVG"), kAverages);
  }
  // Requests that a wide spectrum takes; the last is of putting back.
  int RequestsInAll() {
    usb.FailFrom(0);
    (void)Taken(Quick());
    return usb.Requests();
  }
  static WideCaptureWish Quick() { return {.setup = {.averages = 1}}; }

  std::vector<int> order;
  std::vector<WideProgress> progress;
};

TEST_F(WideCaptureTest, TakesAllOptionsInOneGoAndPutsTheSettingsBack) {
  const WideCaptured captured = Taken();
  EXPECT_FALSE(captured.failure);
  EXPECT_THAT(order, ElementsAre(1, 0, 2, 3)) << "it is set to option 1";
  EXPECT_EQ(captured.records.size(), 4U);
  for (const Record& record : captured.records) {
    EXPECT_TRUE(record.IsNew());
    EXPECT_EQ(record.settings.averages, kAverages);
    EXPECT_EQ(record.settings.range, 2);
  }
  EXPECT_EQ(captured.end.notPutBack, "");
  ExpectSettingsBack();
}

TEST_F(WideCaptureTest, TakesTheSettingsThatAreAskedForInManualMode) {
  ASSERT_TRUE(TheStation().WriteRegister("REC_CTRL", 0x2331));  // option 3, timer, flat top
  const WideCaptured captured = Taken({.setup = {.range = 1, .window = 1, .averages = 2}});
  ASSERT_FALSE(captured.failure) << captured.failure->text;
  EXPECT_THAT(order, ElementsAre(0, 1, 2, 3));
  for (const Record& record : captured.records) {
    EXPECT_EQ(record.settings.range, 1);
    EXPECT_EQ(record.settings.window, 1);
    EXPECT_EQ(record.settings.averages, 2);
  }
  EXPECT_EQ(Word("REC_CTRL"), 0x2331);
  EXPECT_EQ(Word("FFT_AVG"), kAverages);
  EXPECT_EQ(gRecCtrl->SampleRate(), 3) << "the program's own model as well";
}

TEST_F(WideCaptureTest, TellsItsProgressWithTheTimeThatRemains) {
  (void)Taken(Quick());
  ASSERT_GT(progress.size(), 100U);
  double share = 0;
  for (const WideProgress& now : progress) {
    EXPECT_GE(now.share, 0);
    EXPECT_LE(now.share, 1);
    if (now.option) {
      EXPECT_TRUE(now.remaining);
    }
    share = now.share;
  }
  EXPECT_EQ(share, 1);
}

TEST_F(WideCaptureTest, StopKeepsWhatIsCompleteAndPutsTheSettingsBack) {
  InterruptAfter(2s);
  const WideCaptured captured = Taken({.setup = {.averages = 8}});
  ASSERT_TRUE(captured.failure);
  EXPECT_EQ(captured.failure->kind, FailureKind::Interrupted);
  EXPECT_THAT(captured.records, Not(IsEmpty()));
  EXPECT_LT(captured.records.size(), 4U);
  EXPECT_EQ(captured.end.reason, "stopped");
  EXPECT_EQ(captured.end.notPutBack, "");
  ExpectSettingsBack();
}

TEST_F(WideCaptureTest, ASensorThatIsLostGetsItsSettingsWhenItIsBack) {
  usb.FailFrom(RequestsInAll() / 2);
  bool seen = false;
  WideCapture capture(TheStation(), Quick());
  capture.OnProgress([&](const WideProgress& now) {
    if (now.state == WideState::Lost) seen = true;
    if (seen) usb.Mend();
  });
  const WideCaptured captured = capture.Run();
  EXPECT_TRUE(seen);
  ASSERT_TRUE(captured.failure);
  EXPECT_EQ(captured.failure->kind, FailureKind::NoSensor);
  EXPECT_THAT(captured.failure->text, Not(IsEmpty()));
  EXPECT_THAT(captured.records, Not(IsEmpty()));
  EXPECT_EQ(captured.end.notPutBack, "");
  ExpectSettingsBack();
}

// The adapter feeds the sensor: it starts again from what its flash holds.
TEST_F(WideCaptureTest, ASensorThatWasWithoutPowerGetsThemTooUnderItsName) {
  usb.FaultAt(RequestsInAll() / 2, UsbFault::Unplugged, [this] { hardware.Adapter().Unplug(); });
  WideCapture capture(TheStation(), Quick());
  capture.OnProgress([&](const WideProgress& now) {
    if (now.state == WideState::Lost) hardware.Adapter().Replug();
  });
  const WideCaptured captured = capture.Run();
  ASSERT_TRUE(captured.failure);
  EXPECT_EQ(captured.end.notPutBack, "");
  ExpectSettingsBack();
}

TEST_F(WideCaptureTest, WhatCouldNotBePutBackIsSaidWithTheSettingsOfBefore) {
  usb.FailFrom(RequestsInAll() / 2);
  const auto start = clock.Monotonic();
  const WideCaptured captured = Taken(Quick());
  EXPECT_THAT(captured.end.notPutBack,
              HasSubstr("sample-rate option 1, 0 to 20 g, Hanning, 3 averages, mode manual"));
  EXPECT_GT(clock.Monotonic() - start, 20s) << "it was waited for";
  EXPECT_LT(clock.Monotonic() - start, 60s);
}

TEST_F(WideCaptureTest, AnInterruptEndsTheSearchForALostSensor) {
  usb.FailFrom(RequestsInAll() / 2);
  bool asked = false;
  WideCapture capture(TheStation(), Quick());
  capture.OnProgress([&](const WideProgress& now) {
    if (now.state != WideState::Lost || asked) return;
    asked = true;
    InterruptAfter(1s);
  });
  const WideCaptured captured = capture.Run();
  EXPECT_TRUE(asked);
  EXPECT_THAT(captured.end.notPutBack, Not(IsEmpty()));
}

TEST_F(WideCaptureTest, ASensorThatCannotBeAskedBeforehandIsLeftAsItIs) {
  int request = 0;
  while (progress.empty()) {
    usb.FaultAt(++request, UsbFault::Absent);
    const WideCaptured captured = Taken(Quick());
    ASSERT_TRUE(captured.failure) << request;
    EXPECT_EQ(captured.failure->kind, FailureKind::NoSensor) << request;
    usb.Mend();
    ASSERT_TRUE(TheStation().Connect());
    ExpectSettingsBack();
  }
  EXPECT_GT(request, 10);
}

// A word is answered as another one, from the n-th time on.
class WideCaptureSpoilt : public WideCaptureTest {
 protected:
  void Spoil(std::array<std::uint8_t, 2> word, std::uint8_t first, int from, int until = 1 << 30) {
    usb.OnAnswer([this, word, first, from, until](std::span<std::uint8_t> answer) {
      const auto found = std::ranges::search(answer, word);
      if (found.empty()) return;
      ++seen_;
      if (seen_ >= from && seen_ < until) found.front() = first;
    });
  }
  int seen_ = 0;
};

TEST_F(WideCaptureSpoilt, SettingsThatReadDifferentlyTwiceAreLeftAsTheyAre) {
  Spoil({0x11, 0x20}, 0x13, 3, 4);
  const WideCaptured captured = Taken(Quick());
  ASSERT_TRUE(captured.failure);
  EXPECT_EQ(captured.failure->kind, FailureKind::Refused);
  EXPECT_THAT(captured.failure->text, HasSubstr("read differently twice"));
  EXPECT_THAT(order, IsEmpty());
  usb.OnAnswer({});
  ExpectSettingsBack();
}

TEST_F(WideCaptureSpoilt, ASensorThatDoesNotTakeItsSettingsIsSaidWithWhatItHas) {
  Spoil({0x10, 0x20}, 0x12, 1);  // option 1 instead of 0
  const WideCaptured captured = Taken(Quick());
  ASSERT_TRUE(captured.failure);
  EXPECT_EQ(captured.failure->kind, FailureKind::Refused);
  EXPECT_THAT(captured.failure->text,
              HasSubstr("did not take the settings for option 0: it has sample-rate option 2"));
  EXPECT_THAT(order, IsEmpty());
  EXPECT_EQ(captured.end.notPutBack, "");
  usb.OnAnswer({});
  ExpectSettingsBack();
}

TEST_F(WideCaptureSpoilt, ARecordOfAnotherOptionThanWasSetIsRefused) {
  Spoil({0x58, 0x01}, 0xD8, 1);  // of the record's own word: option 3 instead of 1
  const WideCaptured captured = Taken(Quick());
  ASSERT_TRUE(captured.failure);
  EXPECT_EQ(captured.failure->kind, FailureKind::Refused);
  EXPECT_EQ(captured.failure->text,
            "The record says sample-rate option 3, though the sensor was set to 1.");
  EXPECT_THAT(order, ElementsAre(0)) << "what came before is kept";
  EXPECT_EQ(captured.end.notPutBack, "");
  usb.OnAnswer({});
  ExpectSettingsBack();
}

TEST_F(WideCaptureSpoilt, ASensorThatDoesNotTakeThemBackIsSaidWithBoth) {
  InterruptAfter(1s);
  WideCapture capture(TheStation(), Quick());
  capture.OnProgress([&](const WideProgress& now) {
    if (now.state == WideState::PuttingBack) Spoil({0x11, 0x20}, 0x13, 1);
  });
  const WideCaptured captured = capture.Run();
  EXPECT_THAT(captured.end.notPutBack,
              HasSubstr("did not take its settings back: it has sample-rate option 3, 0 to 20 g"));
  EXPECT_THAT(captured.end.notPutBack, HasSubstr("before it had sample-rate option 1, 0 to 20 g"));
}

TEST_F(WideCaptureTest, AnInterruptBetweenTwoCapturesKeepsWhatIsComplete) {
  WideCapture capture(TheStation(), Quick());
  capture.OnRecord([&](const Record&) { InterruptAfter(0s); });
  const WideCaptured captured = capture.Run();
  EXPECT_EQ(captured.records.size(), 1U);
  EXPECT_EQ(captured.end.reason, "stopped");
  ExpectSettingsBack();
}

TEST_F(WideCaptureTest, NobodyNeedLook) {
  const WideCaptured captured =
      WideCapture(TheStation(), {.setup = {.averages = 1}, .options = 0b0101}).Run();
  EXPECT_FALSE(captured.failure);
  ASSERT_EQ(captured.records.size(), 2U);
  EXPECT_EQ(captured.records[0].settings.option, 0);
  EXPECT_EQ(captured.records[1].settings.option, 2);
  ExpectSettingsBack();
}

// A fault of each kind at a request; requests of read-outs in part, all others each.
class WideCaptureFaults : public WideCaptureTest, public testing::WithParamInterface<UsbFault> {
 protected:
  // Numbers of the requests around each change of what the run does.
  std::vector<int> RequestsOfInterest() {
    std::vector<int> all;
    int before = 1;
    usb.FailFrom(0);
    WideCapture capture(TheStation(), Quick());
    capture.OnProgress([&](const WideProgress& now) {
      const auto what = std::pair{now.state, now.done.size()};
      if (what == last_) return;
      last_ = what;
      for (int k = std::max(before, usb.Requests() - kAround); k < usb.Requests() + kAround; ++k) {
        all.push_back(k);
        before = k + 1;
      }
    });
    const WideCaptured captured = capture.Run();
    EXPECT_EQ(captured.records.size(), 4U);
    for (int k = 1; k < usb.Requests(); k += kStride) all.push_back(k);
    return all;
  }

  static constexpr int kAround = 45;
  static constexpr int kStride = 499;
  std::pair<WideState, std::size_t> last_{WideState::Ended, 9};
};

TEST_P(WideCaptureFaults, LeaveTheSettingsAsTheyWereOrSaySo) {
  int met = 0;
  for (const int request : RequestsOfInterest()) {
    SCOPED_TRACE(request);
    usb.FaultAt(request, GetParam());
    WideCapture capture(TheStation(), Quick());
    const WideCaptured captured = capture.Run();
    met += usb.Met() == UsbRequest::None ? 0 : 1;
    usb.Mend();
    for (const Record& record : captured.records) ASSERT_TRUE(record.IsNew());
    ASSERT_TRUE(captured.failure || captured.records.size() == 4U);
    if (!TheStation().Connect()) {
      ASSERT_TRUE(TheStation().Connect());
    }
    if (captured.end.notPutBack.empty()) {
      ExpectSettingsBack();
    } else {
      ASSERT_TRUE(TheStation().WriteRegister("REC_CTRL", kRecCtrl));
      ASSERT_TRUE(TheStation().WriteRegister("FFT_AVG", kAverages));
    }
    if (HasFailure()) return;
  }
  EXPECT_GT(met, 250);
}

INSTANTIATE_TEST_SUITE_P(Kinds, WideCaptureFaults,
                         testing::Values(UsbFault::Absent, UsbFault::Short, UsbFault::Late));

}  // namespace
}  // namespace kestrel
