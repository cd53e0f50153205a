// A program in its start state that has found a board with a sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "app/program_state.h"
#include "connection/core.h"
#include "device/register_models.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_device.h"
#include "support/scripted_loop.h"
#include "support/scripted_sensor.h"
#include "support/unused_hardware.h"

namespace kestrel {

// A program in its start state that has found a board with a sensor, and recorded nothing yet.
class RegisterBench : public testing::Test {
 protected:
  // What puts the program-wide names back, before and after: a bench of a layer above this one
  // gives the reset of its own layer.
  using Reset = void (*)();

  explicit RegisterBench(Reset reset = ResetDevice) : startState_{reset} {
    SetColours();
    core.delay.SkipCalibration();
    core.registers.Use(kUsbAdapter);
    core.usb.SelectUsbAdapter();
    InitRegisterTable(core.registers);
    sensor.ClearFrames();
    EXPECT_TRUE(core.registers.Reachable());
    EXPECT_TRUE(messages.Texts().empty());
  }

  ~RegisterBench() override { EXPECT_EQ(sensor.Opened(), 0) << "the board was left open"; }

  // The frames since the last call.
  Frames TakeFrames() {
    Frames frames = sensor.AllFrames();
    sensor.ClearFrames();
    return frames;
  }

 private:
  // Before the members below: they are built on the start state, and gone when it is restored.
  class StartState {
   public:
    explicit StartState(Reset reset) : reset_(reset) { reset_(); }
    ~StartState() { reset_(); }
    StartState(const StartState&) = delete;
    StartState& operator=(const StartState&) = delete;

   private:
    Reset reset_;
  } startState_;

 protected:
  FakeClock clock;
  ScriptedLoop loop{clock};
  RecordingPointer pointer;
  RecordingMessages messages;
  MemoryFiles files;
  FixedLocale locale;
  ScriptedSensor sensor{clock};
  UnusedPort port;
  UnusedDriverService driverService;
  Core core{Seams{.clock = clock,
                  .loop = loop,
                  .pointer = pointer,
                  .messages = messages,
                  .files = files,
                  .locale = locale,
                  .usb = sensor,
                  .port = port,
                  .driverService = driverService}};
};

}  // namespace kestrel
