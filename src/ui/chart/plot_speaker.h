// The analyser's plot for assistive technology: name the record, value the cursor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessibleWidget>
#include <QString>

namespace kestrel {

class AnalyserPlot;

class PlotSpeaker : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit PlotSpeaker(AnalyserPlot* plot);

  // From now on all plots are presented so; once, however often it is asked for.
  static void Present();
  static void CursorMoved(AnalyserPlot* plot);

  [[nodiscard]] QString text(QAccessible::Text kind) const override;
  void* interface_cast(QAccessible::InterfaceType type) override;
  // The cursor's first member along x; setting it places the cursor.
  [[nodiscard]] QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  [[nodiscard]] QVariant minimumValue() const override;
  [[nodiscard]] QVariant maximumValue() const override;
  [[nodiscard]] QVariant minimumStepSize() const override { return {}; }

 private:
  [[nodiscard]] AnalyserPlot* Plot() const;
  // What there is while no cursor is: the hint, or the largest peaks.
  [[nodiscard]] QString Content() const;
};

}  // namespace kestrel
