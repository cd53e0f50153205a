// Mock parallel ports with the sensor's lines on their pins.
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "hardware/mock_testbed.h"
#include "simulator/simulated_port.h"

namespace kestrel {

// /dev/parport0, /dev/parport1, ... with the sensor's lines on their pins.
class MockParallelPort {
 public:
  // The lines after an access.
  struct Pins {
    unsigned data;    // data register
    unsigned status;  // status register
  };

  MockParallelPort(MockTestbed& testbed, int number, SimulatedSensor& sensor);

  int claimError = 0;                    // errno of every claim
  int failAccessesFrom = 0;              // so many register accesses from now; 0 for never
  bool refuseAlone = false;              // others have registered for the port
  std::atomic<bool> holdClaims = false;  // shared claims wait until it is false again
  std::atomic<int> claims = 0;
  int releases = 0;
  int requests = 0;
  std::vector<Pins> trace;  // one entry a register access

  [[nodiscard]] bool Claimed() const { return claimed_; }
  [[nodiscard]] bool Alone() const { return alone_; }

 private:
  long Answer(unsigned long request, UMockdevIoctlData* argument);
  [[nodiscard]] bool AccessFails() {
    if (failAccessesFrom > 1) --failAccessesFrom;
    return failAccessesFrom == 1;
  }
  void Record();

  SimulatedPort pins_;
  bool claimed_ = false;
  bool alone_ = false;
  unsigned data_ = 0;
  MockNode node_;
};

}  // namespace kestrel
