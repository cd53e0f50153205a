// The desk: the logic of a main window, put together over its views.
// SPDX-License-Identifier: MIT
#pragma once

#include "acquisition/capture_cycle.h"
#include "acquisition/capture_readout.h"
#include "acquisition/settings_exchange.h"
#include "acquisition/status.h"
#include "acquisition/window_delay.h"
#include "alarms/alarm_status.h"
#include "connection/core.h"
#include "logging/data_log.h"
#include "plot/band_overlay.h"
#include "plot/cursor.h"
#include "plot/spectrum_plot.h"

namespace kestrel {

// Where a desk shows what it does and finds what the user has set; outlives it.
struct DeskViews {
  AlarmStatusView& alarms;
  PlotView& plot;
  BandOverlayView& bands;
  StatusView& status;
  DataLogView& log;
  ReadoutView& readout;
  CaptureView& capture;
  SettingsExchangeView& settings;
  CursorView& cursor;
};

// Everything between the views of one main window and the road to its sensor. It asks the sensor
// nothing by itself.
struct Desk {
  Desk(Core& core, const DeskViews& views);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  AlarmStatus alarms;
  SpectrumPlot plot;
  BandOverlay overlay;
  StatusDisplay status;
  DataLog log;
  WindowDelay delay;
  CaptureReadout readout;
  CaptureCycle cycle;
  SettingsExchange settings;
  PlotCursor cursor;
};

}  // namespace kestrel
