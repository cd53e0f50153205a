// PlotScale: the plot's vertical full scale in g.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Vertical full scale of the plot in g (0): 1 from the start of the program, afterwards always the
// number in the caption of cmdPlotScale, taken over by PlotRecord.
extern const double& PlotScale;

void TakePlotScale(double fullScaleG);

}  // namespace kestrel
