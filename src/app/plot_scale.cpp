// The start value of PlotScale.
// SPDX-License-Identifier: MIT
#include "app/plot_scale.h"

namespace kestrel {

double PlotScale = 0;

}  // namespace kestrel
