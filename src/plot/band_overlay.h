// The alarm bands over the plot of a spectrum.
// SPDX-License-Identifier: MIT
#pragma once

#include "plot/band_drag.h"
#include "plot/overlay_control.h"
#include "plot/overlay_lines.h"
#include "plot/overlay_owner.h"
#include "plot/spectrum_plot.h"

namespace kestrel {

// The alarm bands of one axis and sample-rate option over the plot of an FFT record, and what the
// pointer does with them.
class BandOverlay : public OverlayControl {
 public:
  BandOverlay(SpectrumPlot& plot, BandOverlayView& view)
      : plot_(plot), view_(view), lines_(view), drag_(lines_, view) {}

  // The editor, or null while there is none; the overlay is off then.
  void SetOwner(OverlayOwner* owner);
  [[nodiscard]] bool IsOn() const { return owner_ != nullptr && owner_->OverlayAxis().has_value(); }

  // Colours the lines and sets the horizontal hit tolerance.
  void initPlotLines();

  // Draws the record, then the bands of the owner's axis and option if the overlay is on. Asks the
  // sensor for its alarm state, as every drawing of the record does.
  void PlotBands() override;
  // Brings lines and labels back after the record was drawn; asks the sensor nothing.
  void RecordRedrawn();
  // Text and place for the labels of a band, 1 to 6.
  void SetLineLabel(int band);
  void ClearLines() override;
  void ClearABLabels() override { view_.ClearABLabels(); }
  void RedrawBands() override { RecordRedrawn(); }
  void PlotRecord() override { plot_.PlotRecord(); }

  void pic1_MouseMove(const PointerPlace& pointer);
  void pic1_MouseDown(const PointerPlace& pointer);
  // Carries what was dragged to the owner.
  void pic1_MouseUp();
  void PointerLeft();
  // Ends a drag with lines and table as they were before it.
  void EndDrag();

  [[nodiscard]] const BandDrag& Drag() const { return drag_; }
  [[nodiscard]] const OverlayLines& Lines() const { return lines_; }

 private:
  void PlaceLines();
  void Tell(const DraggedBand& dragged);

  SpectrumPlot& plot_;
  BandOverlayView& view_;
  OverlayLines lines_;
  BandDrag drag_;
  OverlayOwner* owner_ = nullptr;
};

}  // namespace kestrel
