// PlotScale: the plot's vertical full scale in g.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Vertical full scale of the plot in g (0); set to 1 by Main, afterwards always the number in the
// caption of cmdPlotScale, taken over by PlotRecord.
extern double PlotScale;

}  // namespace kestrel
