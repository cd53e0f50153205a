// Alarm band lines under the pointer: which one is hit, and where a drag takes it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "plot/overlay_lines.h"

namespace kestrel {

// The pointer over the plot, in bins and g.
struct PointerPlace {
  double x = 0;
  double y = 0;
  bool held = false;   // with the button down
  bool shift = false;  // with Shift held
};

// How near the pointer must be to a line, in bins and g.
struct HitTolerance {
  double x = 0;
  double y = 0;
};

enum class DragMode : std::int16_t {
  Idle = 0,
  OverEdge = 1,
  OverLevel = 2,
  DraggingEdge = 3,
  DraggingLevel = 4
};

// Where a drag has left a band: whole bins 0..255 after mode 3, a level in g after mode 4.
struct DraggedBand {
  int band = 0;
  int group = 0;  // of the line that was dragged
  int fLow = 0;
  int fHigh = 0;
  double g = 0;
};

// Finds the line under the pointer and moves it while the button is held. An edge takes its
// partner along, as far as the record goes; with Shift it moves alone as far as its partner.
class BandDrag {
 public:
  BandDrag(OverlayLines& lines, BandOverlayView& view) : lines_(lines), view_(view) {}

  void SetTolerance(HitTolerance tolerance) { tolerance_ = tolerance; }
  [[nodiscard]] HitTolerance Tolerance() const { return tolerance_; }

  [[nodiscard]] DragMode Mode() const { return mode_; }
  [[nodiscard]] bool Dragging() const {
    return mode_ == DragMode::DraggingEdge || mode_ == DragMode::DraggingLevel;
  }
  [[nodiscard]] int Band() const { return band_; }    // of the line that is highlighted
  [[nodiscard]] int Group() const { return group_; }  // likewise

  // Highlights the line under the pointer, or drags the one it holds.
  void Move(const PointerPlace& pointer);
  // Picks up the line that is highlighted.
  void Press(const PointerPlace& pointer);
  // Lets go of the line, which stays where it was drawn last. Nothing when that is no other value.
  std::optional<DraggedBand> Release();
  // Ends hover or drag with every line back in its place and colour.
  void Cancel();

 private:
  struct Span {
    double low = 0;
    double high = 0;
    bool operator==(const Span&) const = default;
  };

  [[nodiscard]] bool IsOver(int group, int band, const PointerPlace& pointer) const;
  void Hover(const PointerPlace& pointer);
  void ShowGrip(bool shift);
  void Clear();
  void Drag(const PointerPlace& pointer);
  [[nodiscard]] bool StaysPut(const PointerPlace& pointer) const;
  [[nodiscard]] static double EdgeOf(const Span& span, int group);
  [[nodiscard]] Span SpanAt(double x) const;
  [[nodiscard]] Span Moved(double x) const;
  [[nodiscard]] Span Resized(double x) const;
  [[nodiscard]] std::optional<DraggedBand> Result() const;

  OverlayLines& lines_;
  BandOverlayView& view_;
  HitTolerance tolerance_;
  DragMode mode_ = DragMode::Idle;
  int band_ = 0;   // line index of the highlighted or dragged line
  int group_ = 0;  // its group
  bool isOddGroup_ = false;
  int neighbourGroup_ = 0;  // the other one of the pair

  // Of a drag.
  Span start_;
  double startLevel_ = 0;
  PointerPlace pressed_;
  PointerPlace last_;
  bool moved_ = false;
};

}  // namespace kestrel
