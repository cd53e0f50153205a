// Hits, grips and the moves of a drag, in bins and g.
// SPDX-License-Identifier: MIT
#include "plot/band_drag.h"

#include <algorithm>
#include <cmath>

#include "device/rec_ctrl.h"
#include "record/capture_data.h"

namespace kestrel {
namespace {

constexpr double kLastBin = kFftWidth;

int WholeBin(double x) {
  return static_cast<int>(std::nearbyint(std::clamp(x, 0.0, kLastBin)));
}

}  // namespace

bool BandDrag::IsOver(int group, int band, const PointerPlace& pointer) const {
  const OverlayLine& line = lines_(group, band);
  if (!line.visible || view_.ScaleWidth() != kLastBin) return false;
  if (IsEdge(group)) return std::abs(pointer.x - line.x1) <= tolerance_.x;
  const auto [left, right] = std::minmax(line.x1, line.x2);
  return std::abs(pointer.y - line.y1) <= tolerance_.y && pointer.x >= left - tolerance_.x &&
         pointer.x <= right + tolerance_.x;
}

void BandDrag::Move(const PointerPlace& pointer) {
  // Without the button the release went elsewhere.
  if (Dragging() && !pointer.held) Cancel();
  if (Dragging()) {
    Drag(pointer);
    return;
  }
  if (mode_ != DragMode::Idle && !IsOver(group_, band_, pointer)) Clear();
  if (mode_ == DragMode::Idle && !pointer.held) Hover(pointer);
  if (mode_ != DragMode::Idle) ShowGrip(pointer.shift);
}

// The first hit counts, edges before levels.
void BandDrag::Hover(const PointerPlace& pointer) {
  for (int group = kLowEdge; group < kLineGroups; ++group) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      if (!IsOver(group, band, pointer)) continue;
      mode_ = IsEdge(group) ? DragMode::OverEdge : DragMode::OverLevel;
      group_ = group;
      band_ = band;
      lines_.Highlight(group, band, true);
      return;
    }
  }
}

void BandDrag::ShowGrip(bool shift) {
  const bool isEdge = IsEdge(group_);
  const Grip edge = shift ? Grip::Edge : Grip::Band;
  view_.ShowGrip(isEdge ? edge : Grip::Level);
}

void BandDrag::Clear() {
  if (mode_ == DragMode::Idle) return;
  lines_.Highlight(group_, band_, false);
  mode_ = DragMode::Idle;
  group_ = 0;
  band_ = 0;
  moved_ = false;
  view_.ShowGrip(Grip::None);
}

void BandDrag::Press(const PointerPlace& pointer) {
  if (mode_ == DragMode::OverEdge) {
    mode_ = DragMode::DraggingEdge;
  } else if (mode_ == DragMode::OverLevel) {
    mode_ = DragMode::DraggingLevel;
  } else {
    return;
  }
  isOddGroup_ = group_ % 2 != 0;
  neighbourGroup_ = isOddGroup_ ? group_ + 1 : group_ - 1;
  start_ = {lines_(kLowEdge, band_).x1, lines_(kHighEdge, band_).x1};
  startLevel_ = lines_(group_, band_).y1;
  pressed_ = pointer;
  last_ = pointer;
  moved_ = false;
}

// A click with an unsteady hand moves nothing.
bool BandDrag::StaysPut(const PointerPlace& pointer) const {
  return !moved_ &&
         (mode_ == DragMode::DraggingEdge ? std::abs(pointer.x - pressed_.x) <= tolerance_.x
                                          : std::abs(pointer.y - pressed_.y) <= tolerance_.y);
}

void BandDrag::Drag(const PointerPlace& pointer) {
  ShowGrip(pointer.shift);
  if (StaysPut(pointer)) return;
  moved_ = true;
  last_ = pointer;
  if (mode_ == DragMode::DraggingEdge) {
    const Span span = SpanAt(pointer.x);
    lines_.MoveEdges(band_, span.low, span.high);
    return;
  }
  lines_.MoveLevel(group_, band_, std::max(0.0, std::min(pointer.y, gRecCtrl->gMax())));
}

double BandDrag::EdgeOf(const Span& span, int group) {
  return group == kLowEdge ? span.low : span.high;
}

BandDrag::Span BandDrag::SpanAt(double x) const {
  return last_.shift ? Resized(x) : Moved(x);
}

// The edge follows the pointer to the ends of the record, where its partner waits for it.
BandDrag::Span BandDrag::Moved(double x) const {
  const double edge = std::clamp(x, 0.0, kLastBin);
  const double partner =
      std::clamp(EdgeOf(start_, neighbourGroup_) + edge - EdgeOf(start_, group_), 0.0, kLastBin);
  return isOddGroup_ ? Span{edge, partner} : Span{partner, edge};
}

// Of two edges in the same place, the one on the pointer's side moves.
BandDrag::Span BandDrag::Resized(double x) const {
  const double to = std::clamp(x, 0.0, kLastBin);
  const double picked = EdgeOf(start_, group_);
  const double partner = EdgeOf(start_, neighbourGroup_);
  if (picked == partner) return {std::min(to, partner), std::max(to, partner)};
  const double edge = picked < partner ? std::min(to, partner) : std::max(to, partner);
  return isOddGroup_ ? Span{edge, partner} : Span{partner, edge};
}

std::optional<DraggedBand> BandDrag::Release() {
  const std::optional<DraggedBand> result = moved_ ? Result() : std::nullopt;
  Clear();
  return result;
}

std::optional<DraggedBand> BandDrag::Result() const {
  DraggedBand result{.band = band_, .group = group_};
  if (mode_ == DragMode::DraggingLevel) {
    result.g = lines_(group_, band_).y1;
    return result.g == startLevel_ ? std::nullopt : std::optional(result);
  }
  const Span span = SpanAt(std::nearbyint(last_.x));
  if (span == start_) return std::nullopt;
  result.fLow = WholeBin(span.low);
  result.fHigh = WholeBin(span.high);
  return result;
}

void BandDrag::Cancel() {
  if (mode_ == DragMode::DraggingEdge) {
    lines_.MoveEdges(band_, start_.low, start_.high);
  } else if (mode_ == DragMode::DraggingLevel) {
    lines_.MoveLevel(group_, band_, startLevel_);
  }
  Clear();
}

}  // namespace kestrel
