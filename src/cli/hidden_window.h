// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "acquisition/capture_cycle.h"
#include "acquisition/quiet_views.h"
#include "acquisition/status.h"
#include "alarms/alarm_status.h"
#include "alarms/band_transfer.h"
#include "record/status_flags.h"

namespace kestrel {

// The main window of a program that has none: it keeps what the logic shows for a report.
class HiddenWindow : public CaptureView,
                     public StatusView,
                     public QuietViews,
                     public BandTransferView {
 public:
  struct AlarmState {
    std::string alarm;  // " None", " Warning" or " Fault"
    std::string band;
    std::string peak;
    std::string peakBin;
  };
  struct Flag {
    std::string name;
    std::string state;  // "OK", "SET" or "FAIL"
  };
  // What is being done, and how far it is: `done` of `total`; total 0 when nobody knows.
  using Progress = std::function<void(const std::string& activity, int done, int total)>;

  void OnProgress(Progress progress) { progress_ = std::move(progress); }

  bool dataLog = false;
  int averages = 0;
  int recMode = 0;

  [[nodiscard]] const AlarmState& Alarm(Axis axis) const { return alarms_[Index(axis)]; }
  [[nodiscard]] const std::array<Flag, kStatusFlags>& Flags() const { return flags_; }
  [[nodiscard]] const std::string& TransferMessage() const { return transferMessage_; }

  [[nodiscard]] std::string StartCaption() override { return startCaption_; }
  void SetStartCaption(const std::string& caption) override { startCaption_ = caption; }
  void ShowCapturingData(bool /*shown*/) override {}
  void ShowElapsed(double seconds) override { Report("Capturing", static_cast<int>(seconds), 0); }
  void SetKeyPreview(bool /*on*/) override {}
  [[nodiscard]] std::string FftAvgsText() override { return std::to_string(averages); }
  [[nodiscard]] int RecModeIndex() override { return recMode; }
  [[nodiscard]] bool AutoPlotTicked() override { return true; }
  [[nodiscard]] bool DataLogTicked() override { return dataLog; }

  void SetStatusName(int bit, const std::string& text) override { FlagAt(bit).name = text; }
  void SetStatusFlag(int bit, const std::string& text, double /*colour*/) override {
    FlagAt(bit).state = text;
  }

  void SetBand(Axis axis, const std::string& text) override { alarms_[Index(axis)].band = text; }
  void SetAlarm(Axis axis, const std::string& text) override { alarms_[Index(axis)].alarm = text; }
  void SetPeak(Axis axis, const std::string& text) override { alarms_[Index(axis)].peak = text; }
  void SetPeakBin(Axis axis, const std::string& text) override {
    alarms_[Index(axis)].peakBin = text;
  }

  void ShowProgress(int done, int total) override { Report("Reading", done, total); }
  void DisplaySpectrum(std::int16_t /*option*/) override {}
  void ShowTransfer(const std::string& activity, int done, int total) override {
    Report(activity, done, total);
  }
  void HideTransfer() override {}
  void SetMessage(const std::string& text) override { transferMessage_ = text; }

 private:
  Flag& FlagAt(int bit) { return flags_.at(static_cast<std::size_t>(bit)); }
  void Report(const std::string& activity, int done, int total) {
    if (progress_) progress_(activity, done, total);
  }

  Progress progress_;
  std::string startCaption_ = kStartCaption;
  std::array<AlarmState, 3> alarms_;
  std::array<Flag, kStatusFlags> flags_;
  std::string transferMessage_;
};

}  // namespace kestrel
