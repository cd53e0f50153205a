// How a road is put together, and how its end changes to a simulated sensor.
// SPDX-License-Identifier: MIT
#include "station/sensor_road.h"

namespace kestrel {

SensorRoad::SensorRoad(const RoadSite& site)
    : clock_(site.clock),
      hardware_(site.hardware),
      files_(site.files),
      core({site.clock, site.loop, site.pointer, site.messages, files_, site.locale, hardware_,
            hardware_, hardware_}) {}

void SensorRoad::Simulate(const Scenario& scenario) {
  if (simulator_) {
    Plug(true);
  } else {
    simulator_ = std::make_unique<SimulatedHardware>(clock_, scenario);
  }
  hardware_.Connect({&simulator_->Adapter(), &simulator_->Port(), &simulator_->Service()});
  core.simulated = true;
}

void SensorRoad::Plug(bool in) {
  in ? simulator_->Adapter().Replug(0) : simulator_->Adapter().Unplug(0);
}

SimulatorControl ControlOf(SensorRoad& road, Scenario scenario) {
  return {.connect = [&road, scenario = std::move(scenario)] { road.Simulate(scenario); },
          .isConnected = [&road] { return road.IsSimulated(); },
          .plug = [&road](bool in) { road.Plug(in); }};
}

}  // namespace kestrel
