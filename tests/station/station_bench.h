// A station on a simulated sensor, in time that passes only by waiting.
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/simulated_hardware.h"
#include "station/station.h"
#include "support/failing_usb_driver.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"

namespace kestrel {

class StationBench : public testing::Test {
 protected:
  // The first call makes the station; the adapter is the bench's own.
  Station& TheStation() {
    if (!station_) {
      station_ = std::make_unique<Station>(
          StationSite{.clock = clock,
                      .files = files,
                      .locale = locale,
                      .hardware = {&usb, &hardware.Port(), &hardware.Service()},
                      .watch = {.progress = [this](const Progress& now) { told.push_back(now); },
                                .interrupted = [this] { return Interrupted(); }}});
    }
    return *station_;
  }
  Station& Connected() {
    const Done connected = TheStation().Connect();
    EXPECT_TRUE(connected) << (connected ? "" : connected.Why().text);
    return *station_;
  }
  void EndStation() { station_.reset(); }

  // Interrupts once, this much later.
  void InterruptAfter(std::chrono::nanoseconds time) { interruptAt_ = clock.Monotonic() + time; }

  FakeClock clock;
  MemoryFiles files;
  FixedLocale locale;
  SimulatedHardware hardware{clock};
  FailingUsbDriver usb{hardware.Adapter()};
  std::vector<Progress> told;

 private:
  bool Interrupted() {
    if (!interruptAt_ || clock.Monotonic() < *interruptAt_) return false;
    interruptAt_.reset();
    return true;
  }

  std::optional<std::chrono::nanoseconds> interruptAt_;
  std::unique_ptr<Station> station_;
};

}  // namespace kestrel
