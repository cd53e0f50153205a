// The capture cycle over a scripted sensor, with all its views faked.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "acquisition/desk.h"
#include "record/capture_data.h"
#include "support/fake_band_overlay.h"
#include "support/fake_cursor_view.h"
#include "support/fake_log_view.h"
#include "support/fake_main_views.h"
#include "support/fake_plot_views.h"
#include "support/register_bench.h"
#include "support/reset_program.h"

namespace kestrel {

using Words = std::vector<std::string>;

// The words of an axis that the bench's sensor answers at each buffer pointer.
inline int BufferWord(Axis axis, int index) {
  return 1000 * (static_cast<int>(Index(axis)) + 1) + index;
}

// The main window's logic over the register bench. The sensor holds a record of known words.
class CaptureBench : public RegisterBench {
 protected:
  CaptureBench() : RegisterBench(ResetProgram) {
    const std::array buffers{address::kXBuf, address::kYBuf, address::kZBuf};
    for (const Axis axis : kAxes) {
      sensor.OnRead(buffers[Index(axis)],
                    [this, axis] { return BufferWord(axis, sensor.Word(address::kBufPntr)); });
    }
    sensor.Set(address::kSupplyOut, 2703);
    sensor.Set(address::kTempOut, 1278);
    sensor.Set(address::kRecCnt, 7);
  }

  // All that a read-out asks of the sensor, up to the last point of the Z axis.
  static Frames ReadoutFrames(int width) {
    Frames frames = ReadFrames(address::kRecCnt) + ReadFrames(address::kSupplyOut) +
                    ReadFrames(address::kTempOut) + ReadFrames(address::kRecInfo);
    for (const int buffer : {address::kXBuf, address::kYBuf, address::kZBuf}) {
      for (int i = 0; i <= width; ++i) {
        frames = std::move(frames) + WriteFrames(address::kBufPntr, i) + ReadFrames(buffer);
      }
    }
    return frames;
  }

  // A record that a later read-out may or may not replace.
  void KeepARecord(RecordKind kind = RecordKind::Spectrum) {
    Record record;
    record.kind = RecordKind::Time;  // so that all points are kept
    record.settings.option = 3;
    record.lsbWeight = 0.5;
    record.scaledRange = 2;
    record.conditions = {.supplyV = 3.25F, .temperatureC = 30.5F, .recordCount = 5};
    record.time = clock.UtcNow();
    for (int i = 0; i < 512; ++i) {
      record.Of(Axis::X).data(i) = i;
      record.Of(Axis::Y).data(i) = -i;
      record.Of(Axis::Z).data(i) = 0.5 * i;
      for (const Axis axis : kAxes) {
        record.Of(axis).raw(i) = static_cast<double>(Index(axis) + 1) * i;
      }
    }
    core.record.HandOver(record);
    record.kind = kind;
    core.record.HandOver(record);
    readout.Expect(kind);
  }

  // The record at hand and what the program-wide names say of it.
  struct Kept {
    Record record;
    std::array<RecordArray, 6> arrays;
    std::int16_t width;
    std::int16_t option;
    std::string type;
    double lsbWeight;
    std::int16_t range;
    float supply;
    float temperature;
    bool operator==(const Kept&) const = default;
  };
  [[nodiscard]] Kept TheRecord() const {
    return {core.record.Get(), {DataX, DataY, DataZ, RawX, RawY, RawZ},
            Buff.width,        Buff.sampleRateOption,
            CaptureType,       LsbWeight,
            RangeSetting,      CaptSupply,
            CaptTemp};
  }

  [[nodiscard]] bool WindowIsIdle() const {
    return captureView.caption == "Start" && !captureView.capturingShown &&
           !captureView.keyPreview && !cycle.Running() && !readout.Busy() &&
           !readoutView.hourglass && !readoutView.progressShown && !loop.TimerRuns();
  }

  // The user's press of cmdStart at a time from now.
  void PressAfter(std::chrono::milliseconds time) {
    loop.At(clock.Monotonic() + time, [this] { cycle.cmdStart_Click(); });
  }

  Journal journal;
  FakePlotView plotView{journal};
  FakeAlarmView alarmView{journal};
  FakeLogView logView{journal};
  FakeStatusView statusView{journal};
  FakeReadoutView readoutView{journal};
  FakeCaptureView captureView{journal, readoutView};

  FakeBandOverlayView bandView{journal, plotView};
  FakeSettingsView settingsView;
  FakeCursorView cursorView;

  Desk desk{core,
            {alarmView, plotView, bandView, statusView, logView, readoutView, captureView,
             settingsView, cursorView}};
  AlarmStatus& alarms = desk.alarms;
  SpectrumPlot& plot = desk.plot;
  BandOverlay& overlay = desk.overlay;
  DataLog& log = desk.log;
  StatusDisplay& status = desk.status;
  CaptureReadout& readout = desk.readout;
  CaptureCycle& cycle = desk.cycle;
  SettingsExchange& settings = desk.settings;
};

}  // namespace kestrel
