// The alarm editor as the plot's overlay sees it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "record/axis.h"

namespace kestrel {

// The alarm editor as the plot's overlay sees it, while it is open.
class OverlayOwner {
 public:
  virtual ~OverlayOwner() = default;

  // Whose thresholds are drawn; none while the overlay is off.
  [[nodiscard]] virtual std::optional<Axis> OverlayAxis() = 0;
  // The sample-rate option whose bands are drawn, 0..3.
  [[nodiscard]] virtual std::int16_t OverlayOption() = 0;

  // A band was dragged to other bins, 0..255, of the option on display.
  virtual void TakeDraggedEdges(int band, int fLow, int fHigh) = 0;
  // Alarm 1 or 2 of the axis on display was dragged to a level in g.
  virtual void TakeDraggedLevel(int band, int alarm, double g) = 0;
};

}  // namespace kestrel
