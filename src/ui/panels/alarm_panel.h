// The panel of spectral alarm state and peaks, axis by axis.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <array>

#include "alarms/alarm_status.h"
#include "ui/panels/spacing.h"
#include "ui/panels/state_chip.h"
#include "ui/parts/as_of_box.h"

namespace kestrel {

// Spectral alarm state and peak of each axis. Control arrays count the axes from 1; the indicator
// of an axis and band is lblBA_ axis x 10 + band.
class AlarmPanel : public AsOfBox, public AlarmStatusView {
 public:
  explicit AlarmPanel(Locale& locale);

  void SetSpacing(const Spacing& spacing);

  void SetBand(Axis axis, const std::string& text) override;
  void SetAlarm(Axis axis, const std::string& text) override;
  void SetIndicator(Axis axis, int band, double colour) override;
  void SetPeak(Axis axis, const std::string& text) override;
  void SetPeakBin(Axis axis, const std::string& text) override;

 protected:
  void Grey() override;

 private:
  struct Row {
    QLineEdit* txtAlarm;
    QLineEdit* txtBand;
    QLineEdit* txtPK;
    QLineEdit* txtFreq;
    std::array<StateChip*, kAlarmBands + 1> lblBA;
  };

  void BuildRow(Axis axis);
  void BuildIndicators(Axis axis);

  std::array<Row, 3> rows_{};
};

}  // namespace kestrel
