// The port at 888 kept pin by pin, and the clock that notes waits beside them.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "seams/port_io.h"
#include "support/fake_clock.h"

namespace kestrel {

// The port at 888 (0x378), pin by pin: values written to the data register, "in" for a look at the
// status register, "status=v" for a value written there, "wait 100" for 100 us of the clock.
class RecordingPort : public PortIo {
 public:
  void giveio() override { log_.emplace_back("giveio"); }

  [[nodiscard]] bool IsHeld(std::int16_t /*base*/) override { return held; }
  bool held = true;

  void vbOut(std::int16_t port, std::int16_t value) override {
    EXPECT_TRUE(port == 888 || port == 889) << port;
    log_.push_back((port == 889 ? "status=" : "") + std::to_string(value));
  }

  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override {
    EXPECT_EQ(port, 889);
    log_.emplace_back("in");
    const bool one = (answer_ >> (15 - bitsRead_ % 16) & 1) != 0;
    ++bitsRead_;
    // The data line comes in inverted; the other bits of the register mean nothing.
    return static_cast<std::int16_t>((one ? 0 : 0x40) | (bitsRead_ % 2 == 0 ? 0xBF : 0));
  }

  // The word that the sensor clocks out, high bit first.
  void Answer(int word) { answer_ = word; }

  void NoteWait(long us) { log_.push_back("wait " + std::to_string(us)); }
  [[nodiscard]] const std::vector<std::string>& Log() const { return log_; }
  void ClearLog() { log_.clear(); }

 private:
  std::vector<std::string> log_;
  int answer_ = 0;
  int bitsRead_ = 0;
};

// A clock that notes each wait among the pins.
class PortClock : public FakeClock {
 public:
  explicit PortClock(RecordingPort& port) : port_(port) {}

  void WaitUntil(std::chrono::nanoseconds deadline) override {
    FakeClock::WaitUntil(deadline);
    port_.NoteWait(static_cast<long>(Waits().back().count() / 1000));
  }

 private:
  RecordingPort& port_;
};

}  // namespace kestrel
