// The plot with its controls and the read-outs of its cursor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QWidget>
#include <array>

#include "plot/cursor.h"
#include "plot/overlay_lines.h"
#include "plot/spectrum_plot.h"
#include "ui/panels/spacing.h"
#include "ui/plot/band_lines.h"
#include "ui/plot/cross_hair.h"
#include "ui/plot/cursor_readouts.h"
#include "ui/plot/grip_look.h"
#include "ui/plot/hover_values.h"
#include "ui/plot/plot_accessible.h"
#include "ui/plot/plot_frame.h"
#include "ui/plot/scale_button.h"

namespace kestrel {

// The plot with the alarm bands over it, the controls that choose what it shows and the read-outs
// of its cursor.
class PlotPanel : public QWidget,
                  public PlotView,
                  public CursorView,
                  public BandOverlayView,
                  public PictureTeller {
  Q_OBJECT

 public:
  explicit PlotPanel(const CurrentRecord& record);

  void SetSpacing(const Spacing& spacing);

  // Scale, traces and labels as they are before the first record.
  void SetStartValues();
  void IniAlarmBandLabels();

  void SetUnit(const std::string& text) override;
  void ShowFrequency(bool shown) override;
  void SetXmax(const std::string& text) override;
  void SetYmax(const std::string& text) override;
  void SetYmid(const std::string& text) override;
  void SetYmin(const std::string& text) override;
  [[nodiscard]] std::string Ymax() override;
  [[nodiscard]] std::string ScaleCaption() override;
  void SetScaleCaption(const std::string& text) override;
  [[nodiscard]] bool TraceTicked(Axis axis) override;
  void TickTrace(Axis axis) override;
  void SetScale(double left, double top, double right, double bottom) override;
  void ClearPlot() override;
  void ClearABLabels() override;
  void ClearCursor() override;
  void DrawLine(std::size_t trace, double x1, double y1, double x2, double y2,
                double colour) override;

  void SetCursorX(const std::string& text) override;
  void SetCursorFrequency(const std::string& text) override;
  void SetCursorTime(const std::string& text) override;
  void SetCursorY(const std::string& text) override;
  void MoveCrossHair(double x, double y) override;

  // The values of the traces beside the pointer at (x, y), while a record is shown there.
  void ShowHoverValues(double x, double y);
  void HideHoverValues() { hoverValues_->hide(); }

  [[nodiscard]] double ScaleWidth() override;
  [[nodiscard]] double ScaleHeight() override;
  void ShowLine(int index, const OverlayLine& line) override;
  void PlaceEdgeLabel(bool high, int band, const std::string& text, double x) override;
  void ShowGrip(Grip grip) override;

  [[nodiscard]] QString CursorInWords() override;
  [[nodiscard]] QString PictureInWords() override;
  [[nodiscard]] int CursorIndex() override;
  [[nodiscard]] int LastIndex() override;
  void PlaceCursor(int index) override;

  [[nodiscard]] QCheckBox* TraceBox(Axis axis) const { return traces_[Index(axis)]; }

  ScaleButton* cmdPlotScale;

 signals:
  // Of the plot, as the picture box has them.
  void PointerMoved(double x, double y, bool isHeld, bool isShift);
  void PointerPressed(double x, double y, bool isShift);
  void PointerReleased(double x, double y);
  void PointerLeft();
  void PointerLost();
  void CursorStepped(CursorStep step);  // by a key
  void CursorPlaced(int index);         // by an assistive technology

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LayOut();
  void PreparePlot();
  void NameParts();
  void SetEdgeLabels(const QString& text);

  const CurrentRecord& record_;
  std::array<QCheckBox*, 3> traces_{};
  std::array<QLabel*, 3> swatches_{};
  QHBoxLayout* strip_;
  CursorReadouts readouts_;
  PlotFrame* frame_;
  CrossHair* crossHair_;
  BandLines* bandLines_;  // over the cross-hair, which would dim them
  HoverValues* hoverValues_;
  GripLook grip_;
};

}  // namespace kestrel
