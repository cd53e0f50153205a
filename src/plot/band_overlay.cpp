// Drawing the overlay's lines and labels, and handing on what the pointer does.
// SPDX-License-Identifier: MIT
#include "plot/band_overlay.h"

#include <string>

#include "app/plot_scale.h"
#include "device/rec_ctrl.h"
#include "record/capture_data.h"

namespace kestrel {
namespace {

constexpr double kHorizontalTolerance = 0.5;  // bins
constexpr double kTolerancesPerHeight = 200;

}  // namespace

void BandOverlay::SetOwner(OverlayOwner* owner) {
  ClearLines();
  ClearABLabels();
  owner_ = owner;
}

void BandOverlay::initPlotLines() {
  drag_.Cancel();
  lines_.Init();
  drag_.SetTolerance({.x = kHorizontalTolerance, .y = drag_.Tolerance().y});
}

void BandOverlay::PlotBands() {
  drag_.SetTolerance({.x = drag_.Tolerance().x, .y = view_.ScaleHeight() / kTolerancesPerHeight});
  plot_.PlotRecord();
  RecordRedrawn();
}

void BandOverlay::RecordRedrawn() {
  if (!IsOn()) {
    ClearLines();
    ClearABLabels();
    return;
  }
  PlaceLines();
  for (int band = 1; band <= kAlarmBands; ++band) SetLineLabel(band);
}

// Where the table has them; hover and drag end.
void BandOverlay::PlaceLines() {
  drag_.Cancel();
  const Axis axis = *owner_->OverlayAxis();
  const int option = owner_->OverlayOption();
  const double gLsb = gRecCtrl->gLsb();
  for (int band = 1; band <= kAlarmBands; ++band) {
    const auto field = [&](int number) { return AlarmBandTable(number, band, option); };
    lines_.Place(band, field(kFLowField), field(kFHighField), field(Alarm1Field(axis)) * gLsb,
                 field(Alarm2Field(axis)) * gLsb, PlotScale);
  }
}

void BandOverlay::SetLineLabel(int band) {
  if (view_.ScaleWidth() != kFftWidth) return;
  const std::string number = std::to_string(band);
  view_.PlaceEdgeLabel(false, band, number + "L", lines_(kLowEdge, band).x1);
  view_.PlaceEdgeLabel(true, band, number + "H", lines_(kHighEdge, band).x1);
}

void BandOverlay::ClearLines() {
  drag_.Cancel();
  for (int group = 0; group < kLineGroups; ++group) {
    for (int band = 0; band < kLinesPerGroup; ++band) lines_.SetVisible(group, band, false);
  }
}

void BandOverlay::pic1_MouseMove(const PointerPlace& pointer) {
  const bool wasDragged = drag_.Mode() == DragMode::DraggingEdge;
  const int band = drag_.Band();
  drag_.Move(pointer);
  if (wasDragged) SetLineLabel(band);
}

// The lines may have been drawn before the latest edit, and it is the table's band that is dragged.
void BandOverlay::pic1_MouseDown(const PointerPlace& pointer) {
  if (!IsOn()) return;
  RecordRedrawn();
  PointerPlace hovering = pointer;
  hovering.held = false;
  drag_.Move(hovering);
  drag_.Press(pointer);
}

// A band that the owner fails to take goes back.
void BandOverlay::pic1_MouseUp() {
  if (!drag_.Dragging()) return;
  const auto dragged = drag_.Release();
  RecordRedrawn();
  if (!dragged || !IsOn()) return;
  Tell(*dragged);
  RecordRedrawn();
}

void BandOverlay::Tell(const DraggedBand& dragged) {
  if (IsEdge(dragged.group)) {
    owner_->TakeDraggedEdges(dragged.band, dragged.fLow, dragged.fHigh);
  } else {
    owner_->TakeDraggedLevel(dragged.band, dragged.group == kAlarm1Level ? 1 : 2, dragged.g);
  }
}

void BandOverlay::EndDrag() {
  if (!drag_.Dragging()) return;
  const int band = drag_.Band();
  drag_.Cancel();
  SetLineLabel(band);
}

// A drag goes on outside the plot.
void BandOverlay::PointerLeft() {
  if (!drag_.Dragging()) drag_.Cancel();
}

}  // namespace kestrel
