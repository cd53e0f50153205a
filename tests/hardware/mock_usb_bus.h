// A mock USB bus that boards are plugged into.
// SPDX-License-Identifier: MIT
#pragma once

#include <linux/usbdevice_fs.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "hardware/mock_testbed.h"
#include "simulator/adapter_descriptors.h"
#include "simulator/adapter_firmware.h"

namespace kestrel {

struct MockEndpoint {
  std::uint8_t address;
  std::uint8_t type = 2;  // bulk
  std::uint16_t packetSize = 512;
};

// Where a board is plugged in and how it presents itself.
struct MockBoardPlan {
  BoardDescription description = {};
  int bus = 1;
  std::string ports = "1";  // "2.1": port 1 of the hub on the bus' port 2
  int address = 4;
  std::vector<MockEndpoint> endpoints = {{0x02}, {0x86}, {0x04}, {0x88}};
  std::string kernelDriver = {};  // bound to the interface, if any
};

// A board with the adapter's firmware in it. The settings may be changed between requests.
class MockBoard {
 public:
  MockBoard(MockTestbed& testbed, const MockBoardPlan& plan, SimulatedSensor& sensor);

  // Faults.
  int claimError = 0;           // errno of a claim, as another program causes it
  bool shareClaims = false;     // a claim of one handle does not keep others out
  bool refuseCommands = false;  // stalls the command pipe at each command
  bool holdAnswers = false;     // no answer comes until it is false again
  bool answerShort = false;     // answers lack their last byte
  int unplugAt = 0;             // the n-th bulk transfer from now finds the cable pulled

  // What was asked of the board.
  int claims = 0;
  int releases = 0;
  int haltsCleared = 0;
  int driverDetached = 0;
  int driverAttached = 0;
  int bulkTransfers = 0;
  std::vector<std::vector<std::uint8_t>> commands;
  std::vector<std::uint16_t> languagesAsked;  // of string requests

  // Takes the cable out: every request fails from now on.
  void Pull() {
    pulled_ = true;
    claimed_ = false;
  }
  // Gives its node up for another board. What is still open on it is dead.
  void LeaveNode() { node_.reset(); }
  [[nodiscard]] bool Pulled() const { return pulled_; }
  [[nodiscard]] bool Claimed() const { return claimed_; }
  [[nodiscard]] const std::string& SystemPath() const { return systemPath_; }

 private:
  struct Transfer {
    RequestData urb;
    RequestData buffer;
    std::uintptr_t address;  // of the request block in the program
  };

  long Answer(unsigned long request, UMockdevIoctlData* argument);
  long Claim(bool detaching);
  long Submit(UMockdevIoctlData* argument);
  long SubmitBulk(Transfer transfer);
  long Reap(UMockdevIoctlData* argument);
  long Discard(UMockdevIoctlData* argument);
  void Control(Transfer transfer);
  void QueueAnswer();
  void AnswerWaiting();
  void Finish(Transfer transfer, int status, std::size_t moved);

  MockBoardPlan plan_;
  AdapterFirmware firmware_;
  std::string systemPath_;
  bool pulled_ = false;
  bool claimed_ = false;
  bool driverBound_;
  std::map<std::uint8_t, bool> halted_;
  std::deque<std::vector<std::uint8_t>> answers_;  // as packets, until they are fetched
  std::deque<Transfer> waiting_;                   // for an answer of the board
  std::deque<Transfer> finished_;
  std::unique_ptr<MockNode> node_;  // last: no request comes before the rest is made
};

// The buses: two root hubs, a hub on port 2 of the first, and what is plugged in.
class MockUsbBus {
 public:
  explicit MockUsbBus(SimulatedSensor& sensor);

  MockBoard& Plug(const MockBoardPlan& plan) { return Plug(plan, sensor_); }
  // With a sensor of its own behind it.
  MockBoard& Plug(const MockBoardPlan& plan, SimulatedSensor& sensor);

  // Pulls the cable and tells the system of it.
  void Unplug(MockBoard& board);

  // Lets other users open the board's node, or nobody but the administrator.
  void Permit(const MockBoardPlan& plan, bool permitted) const;

 private:
  SimulatedSensor& sensor_;
  MockTestbed testbed_;
  std::vector<std::unique_ptr<MockBoard>> boards_;
};

}  // namespace kestrel
