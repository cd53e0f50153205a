// An overlay as it is shown, over a plot box without a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plot/overlay_lines.h"
#include "plot/overlay_owner.h"
#include "support/fake_plot_views.h"
#include "support/given.h"
#include "support/journal.h"

namespace kestrel {

// The overlay as it is shown, over a plot box.
class FakeBandOverlayView : public BandOverlayView {
 public:
  struct Label {
    std::string text;
    double x = 0;
    bool operator==(const Label&) const = default;
  };

  FakeBandOverlayView(Journal& journal, const FakePlotView& plot)
      : journal_(journal), plot_(plot) {}

  [[nodiscard]] double ScaleWidth() override { return plot_.corners[2] - plot_.corners[0]; }
  [[nodiscard]] double ScaleHeight() override {
    journal_.Note("scale height");
    return plot_.corners[1] - plot_.corners[3];
  }
  void ShowLine(int index, const OverlayLine& line) override {
    lines[index] = line;
    journal_.Note("line " + std::to_string(index));
  }
  void PlaceEdgeLabel(bool high, int band, const std::string& text, double x) override {
    labels[{high, band}] = {text, x};
    journal_.Note("label " + text);
  }
  void ClearABLabels() override {
    for (auto& [place, label] : labels) label.text.clear();
    journal_.Note("overlay labels cleared");
  }
  void ShowGrip(Grip newGrip) override { grip = newGrip; }

  std::map<int, OverlayLine> lines;              // by index, those shown so far
  std::map<std::pair<bool, int>, Label> labels;  // by high and band
  Grip grip = Grip::None;

 private:
  Journal& journal_;
  const FakePlotView& plot_;
};

// An editor that keeps nothing, unless a test makes it do so.
class FakeOverlayOwner : public OverlayOwner {
 public:
  struct Edges {
    int band, fLow, fHigh;
    bool operator==(const Edges&) const = default;
  };
  struct Level {
    int band, alarm;
    double g;
    bool operator==(const Level&) const = default;
  };

  [[nodiscard]] std::optional<Axis> OverlayAxis() override { return axis; }
  [[nodiscard]] std::int16_t OverlayOption() override { return option; }
  void TakeDraggedEdges(int band, int fLow, int fHigh) override {
    edges.push_back({band, fLow, fHigh});
    if (keeps) {
      Given(AlarmBandTable)(kFLowField, band, option) = fLow;
      Given(AlarmBandTable)(kFHighField, band, option) = fHigh;
    }
  }
  void TakeDraggedLevel(int band, int alarm, double g) override {
    levels.push_back({band, alarm, g});
  }

  std::optional<Axis> axis = Axis::X;
  std::int16_t option = 0;
  bool keeps = false;  // puts dragged edges into the table
  std::vector<Edges> edges;
  std::vector<Level> levels;
};

}  // namespace kestrel
