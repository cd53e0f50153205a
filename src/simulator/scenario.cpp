// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "simulator/scenario.h"

#include <initializer_list>

namespace kestrel {
namespace {

constexpr double kBeltHz = 12.1;
constexpr double kMotorHz = 49.3;
constexpr double kSpindleHz = 986.9;
constexpr double kMeshHz = 23 * kSpindleHz;       // pinion of 23 teeth
constexpr double kBearingHz = 8.33 * kSpindleHz;  // outer race

void AddHarmonics(AxisVibration& axis, double fundamentalHz, std::initializer_list<double> peaksG) {
  double order = 0.0;
  for (const double peakG : peaksG) {
    order += 1.0;
    // A phase that differs from harmonic to harmonic keeps the crest factor of the sum realistic.
    axis.tones.push_back({fundamentalHz * order, peakG, 0.7 * order * order});
  }
}

void AddMesh(AxisVibration& axis, double meshG, double innerSidebandG, double outerSidebandG) {
  axis.tones.push_back({kMeshHz, meshG, 0.3});
  axis.tones.push_back({kMeshHz - kSpindleHz, innerSidebandG, 1.1});
  axis.tones.push_back({kMeshHz + kSpindleHz, innerSidebandG * 0.8, 2.0});
  axis.tones.push_back({kMeshHz - 2 * kSpindleHz, outerSidebandG, 2.9});
  axis.tones.push_back({kMeshHz + 2 * kSpindleHz, outerSidebandG * 0.8, 4.2});
}

}  // namespace

Scenario RunningMachine() {
  Scenario scenario;
  auto& [x, y, z] = scenario.axes;

  // Tangential to the gear: the mesh rules.
  x.offsetG = 0.042;
  x.noiseDensityG = 0.00020;
  AddHarmonics(x, kSpindleHz, {0.16, 0.06, 0.03});
  AddMesh(x, 0.60, 0.09, 0.03);
  AddHarmonics(x, kBearingHz, {0.05, 0.02});
  AddHarmonics(x, kMotorHz, {0.05, 0.02, 0.01});
  AddHarmonics(x, kBeltHz, {0.02, 0.01});

  // Radial: unbalance and misalignment of the spindle.
  y.offsetG = -0.027;
  y.noiseDensityG = 0.00015;
  AddHarmonics(y, kSpindleHz, {0.62, 0.24, 0.11, 0.05, 0.03});
  AddMesh(y, 0.08, 0.02, 0.01);
  AddHarmonics(y, kMotorHz, {0.08, 0.04, 0.02});
  AddHarmonics(y, kBeltHz, {0.01});

  // Axial: the bearing's impacts and their harmonics.
  z.offsetG = 0.058;
  z.noiseDensityG = 0.00025;
  AddHarmonics(z, kSpindleHz, {0.10, 0.04});
  AddHarmonics(z, kBearingHz, {0.58, 0.30, 0.17, 0.09, 0.05});
  AddHarmonics(z, kMotorHz, {0.03, 0.05, 0.02});
  AddHarmonics(z, kBeltHz, {0.03, 0.02, 0.01});
  return scenario;
}

Scenario SingleTone(double frequencyHz, double amplitudeG) {
  Scenario scenario;
  for (AxisVibration& axis : scenario.axes) axis.tones = {{frequencyHz, amplitudeG, 0.0}};
  return scenario;
}

}  // namespace kestrel
