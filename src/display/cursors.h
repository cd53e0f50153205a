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

// The kind that is shown: harmonics and sidebands belong to spectra, over time the cursor is
// single.
[[nodiscard]] CursorKind ShownKind(const StudyChoice& choice);

// Readings of the focus axis's spectrum at the cursor's places; none of another kind, or where
// there is no spectrum.
[[nodiscard]] std::optional<analysis::HarmonicReading> HarmonicsAtCursor(const Study& study);
[[nodiscard]] std::optional<analysis::SidebandReading> SidebandsAtCursor(const Study& study);

// Each returns the places of the cursor after the move, in Hz or s; unchanged where there is
// nothing to move in, or x is no number.
[[nodiscard]] CursorPlaces Placed(const Study& study, double x);
// By whole bins to the nearest bin's middle, by parts of bins from where it is. Of a delta cursor
// the second line, as with ToPeakBySize and ToEnd.
[[nodiscard]] CursorPlaces Stepped(const Study& study, double bins);
// `member` counts the lines of CursorOf from 0. A harmonic moves all, a sideband keeps the centre,
// the centre keeps the spacing; fundamental and spacing stay at least one bin.
[[nodiscard]] CursorPlaces Dragged(const Study& study, int member, double x);
// To the peak nearest to x within ten bins; as Placed where there is none.
[[nodiscard]] CursorPlaces SnappedTo(const Study& study, double x);
// To the next peak by amplitude: 1 for the next smaller, -1 for the next larger.
[[nodiscard]] CursorPlaces ToPeakBySize(const Study& study, int direction);
[[nodiscard]] CursorPlaces ToEnd(const Study& study, bool last);

// Where a cursor of this kind begins: at the largest peak of the focus axis, or in the middle. What
// is on the axis stays; the second place only within the same kind.
[[nodiscard]] CursorPlaces BeginningOf(const Study& study, CursorKind kind);

}  // namespace kestrel::study
