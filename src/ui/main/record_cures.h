// The cures that the line under the plot offers, carried out.
// SPDX-License-Identifier: MIT
#pragma once

#include "acquisition/settings_exchange.h"
#include "app/handler_edge.h"
#include "connection/core.h"
#include "plot/spectrum_plot.h"
#include "record/record_notices.h"
#include "ui/main/secondary_windows.h"
#include "ui/panels/capture_panel.h"
#include "ui/panels/record_panel.h"

namespace kestrel {

// What the buttons of the record's notices do.
class RecordCures {
 public:
  struct Parts {
    Core& core;
    HandlerEdge& edge;
    SpectrumPlot& plot;
    SettingsExchange& settings;
    RecordPanel& record;
    CapturePanel& capture;
    SecondaryWindows& windows;
  };

  explicit RecordCures(const Parts& parts) : parts_(parts) {}

  void CarryOut(Cure cure);
  // Sets the sample-rate option, 0..3. False where a capture is waited for or the sensor was not
  // reached.
  bool ChooseOption(int option);

 private:
  void UseOwnRange();
  void UseHigherRange();

  Parts parts_;
};

}  // namespace kestrel
