// Record settings between faked controls and a scripted sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

#include "acquisition/settings_exchange.h"
#include "device/rec_ctrl.h"
#include "logging/data_log_text.h"
#include "support/capture_bench.h"
#include "support/given.h"

namespace kestrel {

using namespace std::chrono_literals;

class Settings : public CaptureBench {
 protected:
  // The storage method is asked of the model, which reads the register a second time.
  static Frames DisplayFrames() {
    return ReadFrames(address::kRecCtrl) + ReadFrames(address::kRecCtrl);
  }

  std::chrono::nanoseconds startTime = clock.Monotonic();
  FakeSettingsView& view = settingsView;
};

}  // namespace kestrel
