// The read-out: one capture out of the sensor's buffers becomes the record at hand.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "acquisition/fast_readout.h"
#include "acquisition/status.h"
#include "alarms/alarm_status.h"
#include "connection/core.h"
#include "logging/data_log.h"
#include "plot/spectrum_plot.h"
#include "record/record.h"

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

// Moves one capture from the sensor into the program. It fills a record of its own and hands it
// over when it is complete.
class CaptureReadout {
 public:
  CaptureReadout(Core& core, const StatusDisplay& status, const AlarmStatus& alarms,
                 SpectrumPlot& plot, PlotView& plotView, DataLog& log, ReadoutView& view)
      : core_(core),
        status_(status),
        alarms_(alarms),
        plot_(plot),
        plotView_(plotView),
        log_(log),
        view_(view),
        fast_(core) {}

  // How the points are read.
  [[nodiscard]] FastReadout& Fast() { return fast_; }

  // What the sensor's buffers hold from now on: magnitudes, which are unsigned, or signed samples.
  // The record at hand stays what it is.
  void Expect(RecordKind kind);

  // Reads, scales, plots and logs as the check boxes ask; `origin` is how the record came into the
  // buffers. Returns false when the sensor was lost meanwhile: the record at hand is then still the
  // earlier one, its kind is expected again, and nothing is plotted or logged.
  bool ReadCaptureBuffer(const RecordOrigin& origin = {});

  // Reads the newest record of a series that the sensor takes by itself, as ReadCaptureBuffer does,
  // and again when the sensor has taken another one meanwhile: a record is never made of two.
  // Returns false as well when it took one each time.
  bool ReadSeriesBuffer();

  // A capture ended that is not read out: how far the sensor has counted is no longer known.
  void ForgetCount() { count_.reset(); }

  // A read-out is under way.
  [[nodiscard]] bool Busy() const { return busy_; }

 private:
  bool Take(std::optional<Record> record);
  std::optional<Record> Read(const RecordOrigin& origin);
  void ClearPlot();
  void SetScale(Record& record);
  void ShowConditions(const Conditions& conditions);

  Core& core_;
  const StatusDisplay& status_;
  const AlarmStatus& alarms_;
  SpectrumPlot& plot_;
  PlotView& plotView_;
  DataLog& log_;
  ReadoutView& view_;
  FastReadout fast_;
  RecordKind expected_ = RecordKind::Spectrum;
  std::optional<std::int32_t> count_;  // REC_CNT as of the last read-out
  bool busy_ = false;
};

}  // namespace kestrel
