// What PlotScale refers to.
// SPDX-License-Identifier: MIT
#include "app/plot_scale.h"

namespace kestrel {

namespace {

double scale = 0;

}  // namespace

const double& PlotScale = scale;

void TakePlotScale(double fullScaleG) {
  scale = fullScaleG;
}

}  // namespace kestrel
