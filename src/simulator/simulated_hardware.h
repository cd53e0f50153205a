// A bench with one sensor behind adapter and parallel port alike.
// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "simulator/sensor/simulated_sensor.h"
#include "simulator/simulated_adapter.h"
#include "simulator/simulated_driver_service.h"
#include "simulator/simulated_port.h"

namespace kestrel {

// A bench with one sensor, reached through the adapter and through the parallel port alike.
class SimulatedHardware {
 public:
  explicit SimulatedHardware(Clock& clock, Scenario scenario = RunningMachine())
      : sensor_(clock, std::move(scenario)), adapter_(sensor_), port_(sensor_) {}

  [[nodiscard]] SimulatedSensor& Sensor() { return sensor_; }
  [[nodiscard]] SimulatedAdapter& Adapter() { return adapter_; }
  [[nodiscard]] SimulatedPort& Port() { return port_; }
  [[nodiscard]] SimulatedDriverService& Service() { return service_; }

 private:
  SimulatedSensor sensor_;
  SimulatedAdapter adapter_;
  SimulatedPort port_;
  SimulatedDriverService service_;
};

}  // namespace kestrel
