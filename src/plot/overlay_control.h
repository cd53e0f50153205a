// The plot as the alarm editor uses it.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// The main window's plot as the alarm editor uses it.
class OverlayControl {
 public:
  virtual ~OverlayControl() = default;

  // Draws the record with the bands of the axis and option chosen in the editor.
  virtual void PlotBands() = 0;
  // Brings the bands alone to where the table has them; asks the sensor nothing.
  virtual void RedrawBands() = 0;
  virtual void ClearLines() = 0;
  virtual void ClearABLabels() = 0;
  // Draws the record without bands.
  virtual void PlotRecord() = 0;
};

}  // namespace kestrel
