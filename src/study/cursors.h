// The cursor of a study: where its lines stand, what they read, and how it is moved.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "analysis/cursors.h"
#include "chart/plot_scene.h"
#include "study/study.h"

namespace kestrel::study {

[[nodiscard]] SceneCursor CursorOf(const Study& study);

// Each returns the places of the cursor after the move, in Hz or s; unchanged where there is
// nothing to move in.
[[nodiscard]] CursorPlaces Placed(const Study& study, double x);
[[nodiscard]] CursorPlaces Stepped(const Study& study, double bins);
[[nodiscard]] CursorPlaces Dragged(const Study& study, int member, double x);
// To the peak nearest to x within ten bins.
[[nodiscard]] CursorPlaces SnappedTo(const Study& study, double x);
// To the next peak by amplitude: 1 for the next smaller, -1 for the next larger.
[[nodiscard]] CursorPlaces ToPeakBySize(const Study& study, int direction);
[[nodiscard]] CursorPlaces ToEnd(const Study& study, bool last);

// Where a cursor of this kind begins: at the largest peak of the focus axis, or in the middle.
[[nodiscard]] CursorPlaces BeginningOf(const Study& study, CursorKind kind);

}  // namespace kestrel::study
