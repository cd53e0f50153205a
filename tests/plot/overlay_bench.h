// The overlay over a spectrum, switched on for the X axis of option 0.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "device/rec_ctrl.h"
#include "plot/band_overlay.h"
#include "support/change_record.h"
#include "support/fake_band_overlay.h"
#include "support/fake_plot_views.h"
#include "support/given.h"
#include "support/register_bench.h"
#include "support/reset_alarms.h"

namespace kestrel {

// The overlay over an FFT record of 1 g, switched on for the X axis of option 0. Range 0 to 5 g.
class OverlayBench : public RegisterBench {
 protected:
  struct Band {
    int fLow, fHigh, alarm1, alarm2;  // bins and codes
  };

  OverlayBench() : RegisterBench(ResetAlarms) {
    ReadRecCtrl(0x0010);
    view.corners = {0, 1, 255, 0};
    overlay.initPlotLines();
    overlay.SetOwner(&owner);
  }

  void ReadRecCtrl(int word) {
    sensor.Set(address::kRecCtrl, word);
    gRecCtrl->ReadRecCtrl();
    TakeFrames();
  }

  static void SetBand(int number, Band band, Axis axis = Axis::X, int option = 0) {
    Given(AlarmBandTable)(kFLowField, number, option) = band.fLow;
    Given(AlarmBandTable)(kFHighField, number, option) = band.fHigh;
    Given(AlarmBandTable)(Alarm1Field(axis), number, option) = band.alarm1;
    Given(AlarmBandTable)(Alarm2Field(axis), number, option) = band.alarm2;
  }

  // Six bands 40 bins apart and 20 wide, with levels at 0.1 and 0.3 g.
  void SetSixBands() {
    for (int band = 1; band <= 6; ++band)
      SetBand(band, {40 * band - 30, 40 * band - 10, 1311, 3932});
  }

  void SetKind(RecordKind kind) {
    ChangeRecord(core.record, [kind](Record& record) { record.kind = kind; });
  }

  [[nodiscard]] const OverlayLine& Line(int group, int band) const {
    return overlay.Lines()(group, band);
  }
  // x1, y1, x2, y2.
  [[nodiscard]] std::array<double, 4> Ends(int group, int band) const {
    const OverlayLine& line = Line(group, band);
    return {line.x1, line.y1, line.x2, line.y2};
  }

  Journal journal;
  FakePlotView view{journal};
  FakeAlarmView alarmView{journal};
  FakeBandOverlayView bandView{journal, view};
  FakeOverlayOwner owner;
  AlarmStatus alarms{core.registers, alarmView};
  SpectrumPlot plot{core.record, view, alarms, loop, messages};
  BandOverlay overlay{plot, bandView};
};

}  // namespace kestrel
