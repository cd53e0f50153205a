// The scenarios a user may choose: tones, noise, temperature and presets.
// SPDX-License-Identifier: MIT
#include "simulator/signal/scenario.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "simulator/registers/sensor_registers.h"

namespace kestrel {
namespace {

constexpr double kBeltHz = 12.1;
constexpr double kMotorHz = 49.3;
constexpr double kSpindleHz = 986.9;
constexpr double kMeshHz = 23 * kSpindleHz;       // pinion of 23 teeth
constexpr double kBearingHz = 8.33 * kSpindleHz;  // outer race

// Bands for the running machine at option 0: bins, then warnings of X, Y and Z, then faults, in
// codes of 1.19 mg. None but band 3 holds a harmonic of the bearing tone.
constexpr std::array<AlarmBands::Band, AlarmBands::kPerOption> kMachineBands = {{
    {3, 7, 252, 755, 252, 420, 1091, 420},      // spindle
    {8, 28, 168, 378, 168, 336, 629, 336},      // its harmonics
    {40, 44, 168, 168, 738, 336, 336, 1040},    // outer race of the bearing
    {104, 120, 755, 168, 168, 1091, 336, 336},  // gear mesh
    {132, 160, 84, 84, 84, 168, 168, 168},      // between mesh and fourth bearing harmonic
    {218, 255, 84, 84, 84, 168, 168, 168},      // top end
}};

struct NamedScenario {
  std::string_view name;
  Scenario (*make)();
};

constexpr NamedScenario kNamedScenarios[] = {
    {"running-machine", RunningMachine},
    {"bearing-fault", BearingFault},
    {"overheating", Overheating},
    {"broadband-machine", BroadbandMachine},
    {"unsteady-machine", UnsteadyMachine},
    {"calibrator", Calibrator},
    {"at-rest", AtRest},
};

// A phase that differs from harmonic to harmonic keeps the crest factor of the sum realistic.
Tone Harmonic(double fundamentalHz, unsigned order, double peakG) {
  return {fundamentalHz * order, peakG, 0.7 * order * order};
}

void AddHarmonics(AxisVibration& axis, double fundamentalHz, std::initializer_list<double> peaksG) {
  unsigned order = 0;
  for (const double peakG : peaksG) axis.tones.push_back(Harmonic(fundamentalHz, ++order, peakG));
}

// Tones that are not there at first and grow by these steps.
void AddGrowth(AxisVibration& axis, double fundamentalHz, std::initializer_list<double> stepsG) {
  constexpr double kSteps = 11.0;
  unsigned order = 0;
  for (const double stepG : stepsG) {
    Tone tone = Harmonic(fundamentalHz, ++order, 0.0);
    tone.growthG = stepG;
    tone.mostG = kSteps * stepG;
    axis.tones.push_back(tone);
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

double Tone::AmplitudeAt(std::uint64_t captures) const {
  if (growthG <= 0.0) return amplitudeG;
  return std::min(amplitudeG + growthG * static_cast<double>(captures), mostG);
}

double ShapedNoise::PowerAt(double hz) const {
  const double x = hz / resonanceHz;
  return densityG * densityG / (std::pow(1 - x * x, 2) + std::pow(x / q, 2));
}

double AxisVibration::GainAt(std::uint64_t captures) const {
  return std::pow(10.0, std::min(growthDb * static_cast<double>(captures), mostDb) / 20.0);
}

double AxisVibration::NoisePowerAt(double hz) const {
  double power = noiseDensityG * noiseDensityG;
  for (const ShapedNoise& shape : shapes) power += shape.PowerAt(hz);
  return power;
}

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

Scenario BearingFault() {
  Scenario scenario = RunningMachine();
  // In phase with the wear that is there already: 0.58 g, 0.70 g, 0.82 g, ... of the bearing tone.
  AddGrowth(scenario.axes[2], kBearingHz, {0.12, 0.06, 0.035, 0.02, 0.01});
  scenario.preset.settings = {{sensor::kAlmCtrl, 0x0007}};
  for (std::uint16_t number = 1; number <= AlarmBands::kPerOption; ++number) {
    scenario.preset.bands.push_back({number, kMachineBands[number - 1U]});
  }
  return scenario;
}

Scenario Overheating() {
  constexpr std::uint16_t kFortyDegrees = 1245;  // (625 - 40) / 0.47
  Scenario scenario = RunningMachine();
  scenario.warmingC = 45.0;
  scenario.warmingSeconds = 120.0;
  // System alarm on, of temperature, when greater.
  scenario.preset.settings = {{sensor::kAlmSMag, kFortyDegrees}, {sensor::kAlmCtrl, 0x0038}};
  return scenario;
}

Scenario BroadbandMachine() {
  Scenario scenario;
  auto& [x, y, z] = scenario.axes;
  // Sums stay within 1 g; no slope of the noise is steep for the bins that tell it.
  x.tones = {{6.2, 0.02, 0.1},    {24.6, 0.05, 0.9},    {148.3, 0.06, 1.7},  {741.0, 0.08, 2.2},
             {3170.0, 0.10, 0.4}, {12430.0, 0.12, 1.3}, {37140.0, 0.08, 2.9}};
  x.shapes = {{0.0009, 30.0, 1.4}, {0.0003, 250.0, 1.5}, {0.0002, 6000.0, 3.0}};
  x.noiseDensityG = 0.0003;
  y.tones = {{13.7, 0.05, 0.5},
             {49.3, 0.09, 0.2},
             {163.0, 0.06, 1.9},
             {986.9, 0.15, 1.1},
             {22698.7, 0.10, 2.5}};
  y.shapes = {{0.0009, 5.0, 1.0}, {0.0005, 35.0, 1.2}, {0.00015, 14000.0, 4.0}};
  y.noiseDensityG = 0.0004;
  z.tones = {{3.4, 0.03, 0.3}, {61.0, 0.03, 2.8}, {412.0, 0.06, 0.8}, {8221.0, 0.20, 1.4}};
  z.shapes = {{0.0006, 200.0, 1.2}, {0.0003, 2500.0, 2.0}};
  z.noiseDensityG = 0.0003;
  x.offsetG = 0.042;
  y.offsetG = -0.027;
  z.offsetG = 0.058;
  return scenario;
}

Scenario UnsteadyMachine() {
  Scenario scenario = BroadbandMachine();
  for (AxisVibration& axis : scenario.axes) {
    axis.growthDb = 5.0;
    axis.mostDb = 40.0;
  }
  return scenario;
}

Scenario Calibrator() {
  Scenario scenario = AtRest();
  for (AxisVibration& axis : scenario.axes) axis.tones = {{159.155, 1.4421, 0.0}};
  return scenario;
}

Scenario AtRest() {
  Scenario scenario = RunningMachine();
  for (AxisVibration& axis : scenario.axes) axis.tones.clear();
  return scenario;
}

std::vector<std::string> ScenarioNames() {
  std::vector<std::string> names;
  for (const NamedScenario& named : kNamedScenarios) names.emplace_back(named.name);
  return names;
}

std::optional<Scenario> ScenarioNamed(std::string_view name) {
  for (const NamedScenario& named : kNamedScenarios) {
    if (named.name == name) return named.make();
  }
  return std::nullopt;
}

Scenario SingleTone(double frequencyHz, double amplitudeG) {
  Scenario scenario;
  for (AxisVibration& axis : scenario.axes) axis.tones = {{frequencyHz, amplitudeG, 0.0}};
  return scenario;
}

}  // namespace kestrel
