// The main window's panels as the capture logic sees them, without a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "acquisition/capture_cycle.h"
#include "acquisition/capture_readout.h"
#include "acquisition/settings_exchange.h"
#include "acquisition/status.h"
#include "support/journal.h"

namespace kestrel {

class FakeStatusView : public StatusView {
 public:
  explicit FakeStatusView(Journal& journal) : journal_(journal) {}

  void SetStatusName(int bit, const std::string& text) override { names[bit] = text; }
  void SetStatusFlag(int bit, const std::string& text, double colour) override {
    if (bit == 0) journal_.Note("status flags");
    flags[bit] = text;
    colours[bit] = colour;
  }

  std::map<int, std::string> names, flags;
  std::map<int, double> colours;

 private:
  Journal& journal_;
};

class FakeReadoutView : public ReadoutView {
 public:
  explicit FakeReadoutView(Journal& journal) : journal_(journal) {}

  void SetRecCount(const std::string& text) override { recCount = text; }
  void SetSupply(const std::string& text) override { supply = text; }
  void SetTemp(const std::string& text) override { temp = text; }
  void ShowHourglass(bool shown) override {
    hourglass = shown;
    journal_.Note(shown ? "hourglass" : "default pointer");
  }
  void ShowProgress(int done, int total) override {
    progress.push_back(done);
    progressTotal = total;
    progressShown = true;
  }
  void HideProgress() override { progressShown = false; }
  [[nodiscard]] bool AutoPlotTicked() override { return autoPlot; }
  [[nodiscard]] bool DataLogTicked() override { return dataLog; }

  std::string recCount, supply, temp;
  bool hourglass = false;
  bool progressShown = false;
  std::vector<int> progress;
  int progressTotal = 0;
  bool autoPlot = true;
  bool dataLog = false;

 private:
  Journal& journal_;
};

class FakeCaptureView : public CaptureView {
 public:
  FakeCaptureView(Journal& journal, FakeReadoutView& readout)
      : journal_(journal), readout_(readout) {}

  [[nodiscard]] std::string StartCaption() override { return caption; }
  void SetStartCaption(const std::string& text) override {
    caption = text;
    journal_.Note("caption " + text);
  }
  void ShowCapturingData(bool shown) override {
    capturingShown = shown;
    journal_.Note(shown ? "capturing shown" : "capturing hidden");
  }
  void ShowElapsed(double seconds) override { elapsed.push_back(seconds); }
  void SetKeyPreview(bool on) override { keyPreview = on; }
  [[nodiscard]] std::string FftAvgsText() override { return fftAvgs; }
  [[nodiscard]] int RecModeIndex() override { return recMode; }
  [[nodiscard]] bool AutoPlotTicked() override { return readout_.autoPlot; }

  std::string caption = "Start";
  bool capturingShown = false;
  bool keyPreview = false;
  std::vector<double> elapsed;
  std::string fftAvgs = "8";
  int recMode = 0;

 private:
  Journal& journal_;
  FakeReadoutView& readout_;
};

// Lists with as many items as the window's.
class FakeSettingsView : public SettingsExchangeView {
 public:
  [[nodiscard]] int Selected(Setting setting) override { return selected.at(setting); }
  bool Select(Setting setting, int index) override {
    if (index < 0 || index >= items.at(setting)) return false;
    selected[setting] = index;
    return true;
  }
  void Deselect(Setting setting) override { selected[setting] = -1; }
  [[nodiscard]] bool SampleRateBit(int bit) override { return rateBits.at(Place(bit)); }
  void SetSampleRateBit(int bit, bool on) override { rateBits.at(Place(bit)) = on; }
  [[nodiscard]] bool PowerDownTicked() override { return powerDown; }
  void SetPowerDown(bool on) override { powerDown = on; }
  void SetRecCount(const std::string& text) override { recCount = text; }
  [[nodiscard]] std::string FraCapCaption() override { return fraCap; }
  void SetFraCapCaption(const std::string& text) override {
    fraCap = text;
    fraCaps.push_back(text);
  }

  std::string fraCap = "Record settings";
  std::vector<std::string> fraCaps;  // every caption set, in order
  std::map<Setting, int> items{{Setting::RecMode, 3},     {Setting::Window, 3},
                               {Setting::SignalRange, 4}, {Setting::Storage, 3},
                               {Setting::Units, 3},       {Setting::Interval, 256},
                               {Setting::FftAvgs, 256},   {Setting::RecPntr, 16}};
  std::map<Setting, int> selected{{Setting::RecMode, 0},     {Setting::Window, 0},
                                  {Setting::SignalRange, 0}, {Setting::Storage, 0},
                                  {Setting::Units, 0},       {Setting::Interval, 0},
                                  {Setting::FftAvgs, 0},     {Setting::RecPntr, 0}};
  std::array<bool, 4> rateBits{};
  bool powerDown = false;
  std::string recCount;

 private:
  static std::size_t Place(int bit) { return static_cast<std::size_t>(bit); }
};

}  // namespace kestrel
