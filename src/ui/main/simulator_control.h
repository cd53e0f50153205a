// What the windows may do with the simulated sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace kestrel {

// What the windows may do with the simulated sensor.
struct SimulatorControl {
  // Puts it in the place of the system's devices.
  std::function<void()> connect = [] {};
  std::function<bool()> isConnected = [] { return false; };
  // Its adapter's cable: in or out.
  std::function<void(bool)> plug = [](bool) {};
};

}  // namespace kestrel
