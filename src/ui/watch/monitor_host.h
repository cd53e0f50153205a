// What the monitor's view asks of the program around it.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "monitor/plan/plan.h"

namespace kestrel {

class AlarmTeller;
class MonitorRunner;

struct MonitorHost {
  MonitorRunner* runner = nullptr;  // null: nothing can be monitored here
  AlarmTeller* teller = nullptr;
  // Captures as the sensor is set now.
  std::function<monitor::Plan()> present = [] { return monitor::Plan(); };
};

}  // namespace kestrel
