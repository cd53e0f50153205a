// What part of its data a plot shows, and the views that were seen before.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "chart/view_history.h"
#include "ui/chart/plot_layout.h"

namespace kestrel {

// Each axis is either automatic, which follows the scene, or where the user has put it. A new scene
// leaves the user's axes where they are, as long as they can be shown on its axes.
class PlotNavigator {
 public:
  // The scene, which lives as long as it is used here, has changed.
  void Follow(const PlotScene& scene);

  [[nodiscard]] const PlotRanges& Ranges() const { return ranges_; }
  [[nodiscard]] bool IsAutomatic() const;

  void ZoomAcross(double about, double factor);
  void ZoomUp(std::size_t pane, double about, double factor);
  void PutAcross(const PlotRange& range);  // brought within the whole
  void PutUp(std::size_t pane, const PlotRange& range);
  void ShowAll();

  // Makes the present view one to come back to.
  void Remember();
  [[nodiscard]] bool CanGoBack() const { return history_.CanGoBack(); }
  [[nodiscard]] bool CanGoForward() const { return history_.CanGoForward(); }
  void GoBack();
  void GoForward();

 private:
  struct View {
    std::optional<PlotRange> across;
    std::vector<std::optional<PlotRange>> up;
    bool operator==(const View&) const = default;
  };

  void Take(const View& view);
  void Apply();

  PlotAcross across_;
  std::vector<AxisKind> kinds_;
  PlotRanges fitting_;
  View view_;
  PlotRanges ranges_;
  ViewHistory<View> history_;
};

}  // namespace kestrel
