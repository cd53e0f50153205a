// Zooming, moving and going back and forward among views.
// SPDX-License-Identifier: MIT
#include "ui/chart/plot_navigator.h"

#include <algorithm>

namespace kestrel {

void PlotNavigator::Follow(const PlotScene& scene) {
  const bool isOther = scene.across.unit != across_.unit;  // a time record after a spectrum
  across_ = scene.across;
  fitting_ = FittingRanges(scene);
  std::vector<AxisKind> kinds;
  for (const PlotPane& pane : scene.panes) kinds.push_back(pane.up);
  if (isOther || kinds.size() != kinds_.size()) history_.Clear();
  if (isOther) view_ = {};
  // What was chosen in decibels means nothing in g.
  view_.up.resize(kinds.size());
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    if (i >= kinds_.size() || kinds[i] != kinds_[i]) view_.up[i].reset();
  }
  kinds_ = std::move(kinds);
  Apply();
  if (!history_.CanGoBack() && !history_.CanGoForward()) Remember();
}

bool PlotNavigator::IsAutomatic() const {
  return !view_.across && std::none_of(view_.up.begin(), view_.up.end(),
                                       [](const auto& up) { return up.has_value(); });
}

void PlotNavigator::ZoomAcross(double about, double factor) {
  PutAcross(Zoomed(ranges_.across, across_.kind, about, factor));
}

void PlotNavigator::ZoomUp(std::size_t pane, double about, double factor) {
  if (pane < kinds_.size()) PutUp(pane, Zoomed(ranges_.up[pane], kinds_[pane], about, factor));
}

void PlotNavigator::PutAcross(const PlotRange& range) {
  if (!IsShowable(range, across_.kind)) return;
  const PlotRange within = Within(range, across_.kind, fitting_.across);
  view_.across = within == fitting_.across ? std::nullopt : std::optional(within);
  Apply();
}

void PlotNavigator::PutUp(std::size_t pane, const PlotRange& range) {
  if (pane >= kinds_.size() || !IsShowable(range, kinds_[pane])) return;
  view_.up[pane] = range;
  Apply();
}

void PlotNavigator::ShowAll() {
  view_.across.reset();
  std::fill(view_.up.begin(), view_.up.end(), std::nullopt);
  Apply();
}

void PlotNavigator::Remember() {
  history_.Add(view_);
}

void PlotNavigator::GoBack() {
  if (history_.CanGoBack()) Take(history_.GoBack());
}

void PlotNavigator::GoForward() {
  if (history_.CanGoForward()) Take(history_.GoForward());
}

void PlotNavigator::Take(const View& view) {
  view_ = view;
  view_.up.resize(kinds_.size());
  Apply();
}

void PlotNavigator::Apply() {
  ranges_ = fitting_;
  if (view_.across && IsShowable(*view_.across, across_.kind)) {
    ranges_.across = Within(*view_.across, across_.kind, fitting_.across);
  }
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    if (view_.up[i] && IsShowable(*view_.up[i], kinds_[i])) ranges_.up[i] = *view_.up[i];
  }
}

}  // namespace kestrel
