// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "logging/data_log.h"
#include "plot/spectrum_plot.h"
#include "record/axis.h"
#include "record/capture_data.h"
#include "seams/event_loop.h"
#include "seams/messages.h"
#include "transport/register_access.h"

namespace kestrel {

// What the main window shows of a read-out.
class ReadoutView {
 public:
  virtual ~ReadoutView() = default;
  virtual void SetRecCount(const std::string& text) = 0;
  virtual void SetSupply(const std::string& text) = 0;
  virtual void SetTemp(const std::string& text) = 0;
  virtual void ShowHourglass(bool shown) = 0;
  // Paints at once; no events are handled.
  virtual void ShowProgress(int done, int total) = 0;
  virtual void HideProgress() = 0;
  [[nodiscard]] virtual bool AutoPlotTicked() = 0;
  [[nodiscard]] virtual bool DataLogTicked() = 0;
};

// Moves one capture from the sensor into the program.
class CaptureReadout {
 public:
  CaptureReadout(RegisterAccess& registers, SpectrumPlot& plot, PlotView& plotView, DataLog& log,
                 EventLoop& loop, Messages& messages, ReadoutView& view)
      : registers_(registers),
        plot_(plot),
        plotView_(plotView),
        log_(log),
        loop_(loop),
        messages_(messages),
        view_(view) {}

  // Reads, scales, plots and logs as the check boxes ask. Returns false when the sensor was lost
  // meanwhile: the record at hand is then still the earlier one, and nothing is plotted or logged.
  bool ReadCaptureBuffer();

  // A read-out is under way.
  [[nodiscard]] bool Busy() const { return busy_; }

 private:
  struct AxisRecord {
    RecordArray raw;
    RecordArray data;
  };

  bool ReadConditions();
  void SetLsbWeight();
  bool ReadRecord();
  bool ReadAxis(Axis axis, AxisRecord& record);

  RegisterAccess& registers_;
  SpectrumPlot& plot_;
  PlotView& plotView_;
  DataLog& log_;
  EventLoop& loop_;
  Messages& messages_;
  ReadoutView& view_;
  bool busy_ = false;
};

}  // namespace kestrel
