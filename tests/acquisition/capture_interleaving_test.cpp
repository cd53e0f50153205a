// Captures during which anything happens at any pass of the event loop.
// SPDX-License-Identifier: MIT
// Captures during which anything happens at any pass of the event loop.

#include <algorithm>

#include "acquisition/settings_exchange.h"
#include "support/capture_bench.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

constexpr int kCaptures = 25;
constexpr int kHeadLines = 12;  // of a data-log file, before its points
constexpr const char* kDiskFull = "no space left";

// One start of the program: captures one after another until its window is closed.
class Session : public CaptureBench {
 public:
  explicit Session(Random& random) : random_(random) {
    const std::array buffers{address::kXBuf, address::kYBuf, address::kZBuf};
    for (const Axis axis : kAxes) {
      sensor.OnRead(buffers[Index(axis)],
                    [this, axis] { return Word(Index(axis), sensor.Word(address::kBufPntr)); });
    }
    KeepARecord();
  }
  void TestBody() override {}

  void Go() {
    for (int i = 0; i < kCaptures && !closed_ && !HasFailure(); ++i) {
      SCOPED_TRACE("capture " + std::to_string(i));
      Prepare();
      Disturb();
      Act();
      Check();
      Recover();
    }
  }

 private:
  enum class Deed { Press, Escape, OtherKey, Setting, Mode, AutoPlot, Log, Unplug, Replug, Close };

  // The record of one capture differs from all others, and from axis to axis.
  [[nodiscard]] int Word(std::size_t axis, int point) const {
    return (serial_ * 4099 + static_cast<int>(axis) * 20011 + point * 7) & 0xFFFF;
  }

  void Prepare() {
    ++serial_;
    files.failure = random_.OneIn(12) ? kDiskFull : "";
    captureView.recMode = random_.Below(3);
    captureView.fftAvgs = std::to_string(random_.Between(1, 9));
    readoutView.autoPlot = !random_.OneIn(5);
    waitsInSensor_ = !readoutView.autoPlot;
    readoutView.dataLog = random_.OneIn(2);
    sensor.Set(address::kRecCtrl, random_.Below(4) << 4);
    gRecCtrl->ReadRecCtrl();
    sensor.Set(address::kStatus, 0);
    if (!random_.OneIn(4)) sensor.SetAtRead(address::kStatus, random_.Between(2, 8), 0x0080);
    messages.Clear();
    losses_ = 0;
    searches_ = 0;
    earlier_ = TheRecord();
    earlierFiles_ = files.contents;
    earlierIndex_ = DataLogIndex;
    if (random_.OneIn(4)) Unplug(random_.Between(1, 1 << random_.Between(1, 13)));
  }

  // The user's and the world's doings. Whatever comes of them, Stop is pressed in the end.
  void Disturb() {
    loop.ForgetScript();
    const auto now = clock.Monotonic();
    for (int i = random_.Below(7); i > 0; --i) {
      const auto deed = static_cast<Deed>(random_.Below(random_.OneIn(20) ? 10 : 9));
      if (random_.OneIn(2)) {
        loop.AtYield(loop.Yields() + random_.Between(1, 12), [this, deed] { Do(deed); });
      } else {
        loop.At(now + random_.Between(0, 1200) * 1ms, [this, deed] { Do(deed); });
      }
    }
    for (const auto late : {20s, 21s}) {
      loop.At(now + late, [this] { cycle.Form_KeyUp(kEscapeKey); });
    }
    loop.SetMostYields(loop.Yields() + 2000);
  }

  void Do(Deed deed) {
    switch (deed) {
      case Deed::Press:
        return cycle.cmdStart_Click();
      case Deed::Escape:
        return cycle.Form_KeyUp(kEscapeKey);
      case Deed::OtherKey:
        return cycle.Form_KeyUp(13);
      case Deed::Setting:
        return ChangeASetting();
      case Deed::Mode:
        captureView.recMode = random_.Below(3);
        return;
      case Deed::AutoPlot:
        readoutView.autoPlot = !readoutView.autoPlot;
        waitsInSensor_ = true;
        return;
      case Deed::Log:
        readoutView.dataLog = !readoutView.dataLog;
        return;
      case Deed::Unplug:
        return Unplug(random_.Between(1, 40));
      case Deed::Replug:
        return sensor.PlugInAgain();
      case Deed::Close:
        closed_ = true;
        cycle.Close();
        journal.Clear();
        sensor.ClearFrames();
        return;
    }
  }

  void Unplug(int request) {
    sensor.UnplugAtRequest(request);
    ++losses_;
  }

  void ChangeASetting() {
    switch (random_.Below(3)) {
      case 0:
        return settings.Set_RecCtrl();
      case 1:
        return settings.Write_RecPrd();
      default:
        return settings.cbxFFTAvgs_Click();
    }
  }

  // What a handler's edge does: an error ends the handler and no more.
  void Act() {
    try {
      const int action = random_.Below(8);
      searches_ += core.registers.Reachable() ? 0 : 1;
      if (action == 0) {
        cycle.cmdReadBuffer_Click();
      } else if (action == 1) {
        cycle.cmdGetRecord_Click(random_.Below(16));
      } else {
        cycle.cmdStart_Click();
      }
    } catch (const RuntimeError& error) {
      EXPECT_FALSE(files.failure.empty()) << error.what();
    }
  }

  void Check() {
    EXPECT_FALSE(cycle.Running());
    EXPECT_FALSE(loop.TimerRuns());
    EXPECT_EQ(sensor.Opened(), 0);
    if (closed_) {
      EXPECT_EQ(journal.Entries(), Words{}) << "after the window was closed";
      EXPECT_EQ(TakeFrames(), Frames{}) << "after the window was closed";
    } else {
      EXPECT_TRUE(WindowIsIdle());
    }
    EXPECT_LE(messages.Texts().size(), static_cast<std::size_t>(losses_ + searches_))
        << testing::PrintToString(messages.Texts());
    const bool taken = CheckRecord();
    CheckFiles(taken);
  }

  // The record is that of before or that of the sensor, from the first point to the last.
  bool CheckRecord() {
    const bool time = Buff.width == kTimeWidth;
    EXPECT_EQ(CaptureType, time ? "TimeDomain" : "FFT");
    for (const std::int16_t buffer : {row::X_BUF, row::Y_BUF, row::Z_BUF}) {
      EXPECT_EQ(RegSigned[buffer], time);
    }
    if (TheRecord().arrays == earlier_.arrays) {
      // A capture that is not plotted waits in the sensor for the next reading.
      // The names stay as they were, or tell of the record that is kept.
      EXPECT_TRUE(waitsInSensor_ || Buff.width == earlier_.width ||
                  Buff.width == core.record.Get().Width());
      // Either nothing was handed over, or the same words were read anew.
      const Record& record = core.record.Get();
      EXPECT_TRUE(record == earlier_.record || record.time != earlier_.record.time);
      return false;
    }
    for (int i = 0; i < 512; ++i) {
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const RecordArray& raw = *std::array{&RawX, &RawY, &RawZ}[axis];
        const RecordArray& data = *std::array{&DataX, &DataY, &DataZ}[axis];
        if (i <= Buff.width) {
          const int word = Word(axis, i);
          EXPECT_EQ(raw(i), time && word > 0x7FFF ? word - 0x10000 : word) << i;
          EXPECT_EQ(data(i), raw(i) * LsbWeight) << i;
        } else {
          EXPECT_EQ(raw(i), earlier_.arrays[3 + axis](i)) << i;
        }
      }
      if (HasFailure()) break;
    }
    return true;
  }

  // What was written stays; what is new is one whole file with the next number.
  void CheckFiles(bool recordTaken) {
    for (const auto& [path, content] : earlierFiles_) EXPECT_EQ(files.contents[path], content);
    const std::size_t added = files.contents.size() - earlierFiles_.size();
    EXPECT_LE(added, 1U);
    EXPECT_EQ(static_cast<std::size_t>(DataLogIndex - earlierIndex_), added);
    if (added == 0) return;
    EXPECT_TRUE(recordTaken);
    const auto found = files.contents.find(log.LastFile());
    ASSERT_TRUE(found != files.contents.end()) << log.LastFile();
    EXPECT_EQ(found->first.filename(), "Datalog_" + std::to_string(earlierIndex_) + ".csv");
    EXPECT_EQ(std::count(found->second.begin(), found->second.end(), '\n'),
              kHeadLines + Buff.width + 1);
    EXPECT_TRUE(found->second.ends_with("\r\n"));
  }

  // The plug goes back in, and the next capture works.
  void Recover() {
    sensor.PlugInAgain();
    if (closed_ || !random_.OneIn(3)) return Reselect();
    Reselect();
    ++serial_;
    messages.Clear();
    files.failure.clear();
    loop.ForgetScript();
    readoutView.autoPlot = true;
    readoutView.dataLog = false;
    sensor.Set(address::kStatus, 0x0080);
    earlier_ = TheRecord();
    cycle.cmdStart_Click();
    EXPECT_TRUE(messages.Texts().empty());
    EXPECT_TRUE(CheckRecord()) << "a new record";
    EXPECT_TRUE(WindowIsIdle());
  }

  void Reselect() {
    if (core.registers.Reachable()) return;
    core.registers.Use(kUsbAdapter);
    core.usb.SelectUsbAdapter();
    EXPECT_TRUE(core.registers.Reachable());
  }

  Random& random_;
  int serial_ = 0;
  int losses_ = 0;              // plugs pulled
  int searches_ = 0;            // for an adapter that is missing
  bool waitsInSensor_ = false;  // auto-plot is or was off
  bool closed_ = false;
  Kept earlier_{};
  std::map<std::filesystem::path, std::string> earlierFiles_;
  std::int16_t earlierIndex_ = 1;
};

TEST(CaptureInterleaving, WhateverHappensMeanwhileACaptureEndsWellAndTheNextOneWorks) {
  WithSeeds(16, [](Random& random) { Session(random).Go(); });
}

}  // namespace
}  // namespace kestrel
