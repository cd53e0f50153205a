// An axis of a plot: from values to pixels and back, and the moves that zoom and pan it.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Decibels are spaced evenly; the kind of their own tells that they have no zero to fill from.
enum class AxisKind { Linear, Logarithmic, Decibel };

// From low to high, low < high. Values in the unit of the data.
struct PlotRange {
  double low = 0;
  double high = 1;

  [[nodiscard]] double Span() const { return high - low; }
  [[nodiscard]] bool Holds(double value) const { return value >= low && value <= high; }
  bool operator==(const PlotRange&) const = default;
};

// Whether an axis can show it: finite, wide enough to be told apart in double precision, and
// positive throughout on a logarithmic axis.
[[nodiscard]] bool IsShowable(const PlotRange& range, AxisKind kind);

// Places of values between two pixel positions; `at_high` may be less than `at_low`, as on a
// vertical axis. Values that a logarithmic axis cannot show lie far below its low end.
class AxisMap {
 public:
  AxisMap() = default;
  AxisMap(const PlotRange& range, AxisKind kind, double atLow, double atHigh);

  [[nodiscard]] double ToPixel(double value) const;
  [[nodiscard]] double FromPixel(double pixel) const;
  [[nodiscard]] const PlotRange& Range() const { return range_; }
  [[nodiscard]] AxisKind Kind() const { return kind_; }

 private:
  PlotRange range_;
  AxisKind kind_ = AxisKind::Linear;
  double atLow_ = 0;
  double scale_ = 1;   // pixels for each unit, or for each e-fold
  double origin_ = 0;  // low, or its logarithm
};

// The range after zooming about a value that keeps its place: the span is divided by `factor`
// (logarithmically on such an axis). Not showable results leave the range as it is.
[[nodiscard]] PlotRange Zoomed(const PlotRange& range, AxisKind kind, double about, double factor);

// The range moved by a part of its length: 0.1 shows what lies a tenth further up.
[[nodiscard]] PlotRange Panned(const PlotRange& range, AxisKind kind, double part);

// Moved and, where it is longer, shortened, until it lies within the bounds.
[[nodiscard]] PlotRange Within(const PlotRange& range, AxisKind kind, const PlotRange& bounds);

// What shows values from least to largest: linear from 0 (or from below 0) to a round number
// above; logarithmic to the next 1, 2 or 5 beyond either end, at most eight decades; decibels to
// the next ten.
[[nodiscard]] PlotRange RangeFor(double least, double largest, AxisKind kind);

}  // namespace kestrel
