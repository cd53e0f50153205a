// Registers that are reached through an adapter, with no parallel port beside it.
// SPDX-License-Identifier: MIT
#pragma once

#include "support/fake_clock.h"
#include "support/recording_pointer.h"
#include "support/unused_hardware.h"
#include "transport/register_access.h"

namespace kestrel {

// Registers that are reached through an adapter, with no parallel port beside it.
struct UsbRegisters {
  explicit UsbRegisters(UsbAdapter& usb) : access(usb, port, delay) {}

  FakeClock clock;
  RecordingPointer pointer;
  SoftwareDelay delay{clock, pointer};
  UnusedPort pins;
  ParallelPort port{pins, delay};
  RegisterAccess access;
};

}  // namespace kestrel
