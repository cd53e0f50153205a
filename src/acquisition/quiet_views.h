// The views of a read-out where nobody looks.
// SPDX-License-Identifier: MIT
#pragma once

#include "acquisition/capture_readout.h"
#include "logging/data_log.h"
#include "plot/overlay_lines.h"
#include "plot/spectrum_plot.h"

namespace kestrel {

// The views of a read-out where nobody looks: nothing is shown, auto-plot and data log are off.
class QuietViews : public PlotView,
                   public BandOverlayView,
                   public AlarmStatusView,
                   public ReadoutView,
                   public DataLogView {
 public:
  void SetUnit(const std::string& /*text*/) override {}
  void ShowFrequency(bool /*shown*/) override {}
  void SetXmax(const std::string& /*text*/) override {}
  void SetYmax(const std::string& /*text*/) override {}
  void SetYmid(const std::string& /*text*/) override {}
  void SetYmin(const std::string& /*text*/) override {}
  std::string Ymax() override { return "1"; }
  std::string ScaleCaption() override { return "1"; }
  void SetScaleCaption(const std::string& /*text*/) override {}
  bool TraceTicked(Axis /*axis*/) override { return true; }
  void TickTrace(Axis /*axis*/) override {}
  void SetScale(double /*left*/, double /*top*/, double /*right*/, double /*bottom*/) override {}
  void ClearPlot() override {}
  void ClearABLabels() override {}
  void ClearCursor() override {}
  void DrawLine(std::size_t /*trace*/, double /*x1*/, double /*y1*/, double /*x2*/, double /*y2*/,
                double /*colour*/) override {}

  double ScaleWidth() override { return kFftWidth; }
  double ScaleHeight() override { return 1; }
  void ShowLine(int /*index*/, const OverlayLine& /*line*/) override {}
  void PlaceEdgeLabel(bool /*high*/, int /*band*/, const std::string& /*text*/,
                      double /*x*/) override {}
  void ShowGrip(Grip /*grip*/) override {}

  void SetBand(Axis /*axis*/, const std::string& /*text*/) override {}
  void SetAlarm(Axis /*axis*/, const std::string& /*text*/) override {}
  void SetIndicator(Axis /*axis*/, int /*band*/, double /*colour*/) override {}
  void SetPeak(Axis /*axis*/, const std::string& /*text*/) override {}
  void SetPeakBin(Axis /*axis*/, const std::string& /*text*/) override {}

  void SetRecCount(const std::string& /*text*/) override {}
  void SetSupply(const std::string& /*text*/) override {}
  void SetTemp(const std::string& /*text*/) override {}
  void ShowHourglass(bool /*shown*/) override {}
  void ShowProgress(int /*done*/, int /*total*/) override {}
  void HideProgress() override {}
  bool AutoPlotTicked() override { return false; }
  bool DataLogTicked() override { return false; }

  void SetFileCountColour(double /*colour*/) override {}
  void SetFileCount(const std::string& /*text*/) override {}
};

}  // namespace kestrel
