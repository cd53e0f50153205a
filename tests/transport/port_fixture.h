// A parallel port at 888 that is the selected interface.
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "app/delay.h"
#include "app/program_state.h"
#include "support/given.h"
#include "support/recording_pointer.h"
#include "support/recording_port.h"
#include "transport/parallel_port.h"
#include "transport/port_driver.h"

namespace kestrel {

// Pin values and waits, written with blanks between them.
inline std::vector<std::string> Pins(const std::string& text) {
  std::istringstream words(text);
  std::vector<std::string> pins;
  for (std::string word; words >> word;) {
    if (word == "wait") {
      std::string us;
      words >> us;
      word += " " + us;
    }
    pins.push_back(word);
  }
  return pins;
}

// The frame that a sensor on the pins sees: chip select on bit 0, data on bit 2, inverted, taken
// over when the clock on bit 1 falls.
inline int FrameOnPins(const std::vector<std::string>& pins) {
  int frame = 0;
  int before = 0;
  for (const std::string& pin : pins) {
    if (pin.find_first_not_of("0123456789") != std::string::npos) continue;
    const int now = std::stoi(pin);
    const bool clockFell = (before & 2) != 0 && (now & 2) == 0;
    if (clockFell && (now & 1) != 0) frame = frame * 2 + ((now & 4) == 0 ? 1 : 0);
    before = now;
  }
  return frame;
}

// A parallel port at 888 that is the selected interface.
class PortTest : public testing::Test {
 protected:
  PortTest() {
    ResetProgramState();
    ResetPortDriver();
    ResetDelayState();
    delay_.SkipCalibration();
    Given(InterfaceType) = kParallelPort;
    Given(PortAddress) = 888;
    Given(LptWord) = 0;
  }
  ~PortTest() override {
    ResetProgramState();
    ResetPortDriver();
    ResetDelayState();
    Given(LptWord) = 0;
  }

  RecordingPort pins_;
  PortClock clock_{pins_};
  RecordingPointer pointer_;
  SoftwareDelay delay_{clock_, pointer_};
  ParallelPort port_{pins_, delay_};
};

}  // namespace kestrel
