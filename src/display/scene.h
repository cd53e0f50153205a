// What a study shows in its plot, and what stands beside the pointer.
// SPDX-License-Identifier: MIT
#pragma once

#include "chart/plot_scene.h"
#include "study/study.h"

namespace kestrel::study {

// Of the view that is chosen; without a pane that has traces, `hint` says why.
[[nodiscard]] PlotScene SceneOf(const Study& study);
[[nodiscard]] PlotScene SpectrumScene(const Study& study);
[[nodiscard]] PlotScene TimeScene(const Study& study);

// The values of the live traces at the nearest sample to x (Hz or s).
[[nodiscard]] PlotReadOut ReadOutAt(const Study& study, double x, int pane);

// "g", "mm/s": of samples.
[[nodiscard]] std::string UnitOfTime(const StudyChoice& choice);

// The axes that are shown, X first.
[[nodiscard]] std::vector<Axis> ShownAxes(const StudyChoice& choice);
// The axes whose traces a pane holds.
[[nodiscard]] std::vector<Axis> AxesOfPane(const StudyChoice& choice, int pane);
[[nodiscard]] int PaneOf(const StudyChoice& choice, Axis axis);

[[nodiscard]] PlotInk InkOf(Axis axis);

// The horizontal axis of a spectrum, in Hz where the chosen unit cannot be had.
[[nodiscard]] analysis::Horizontal HorizontalOf(const StudyChoice& choice, double binWidthHz);

// More records beside the one shown than these are drawn as a crowd.
inline constexpr std::size_t kTracesOfOthers = 5;

// "Maximum of 3", "Reference": how an extra is called in the legend.
[[nodiscard]] std::string NameOf(Extra extra, int captures);
// Says in the scene's note that something chosen is not drawn, why, and what to choose; once.
void NoteNotDrawn(PlotScene& scene, const std::string& name, const analysis::Refusal& why);
// "7 records, least to largest, median", and how many of `all` were left out, of other what:
// "bins".
[[nodiscard]] std::string CrowdName(std::size_t drawn, std::size_t all, const std::string& other);

// Head and line of what is shown, as they stand above the plot.
void TitleScene(PlotScene& scene, const Study& study);

}  // namespace kestrel::study
