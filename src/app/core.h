// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include "app/clock.h"
#include "app/delay.h"
#include "app/event_loop.h"
#include "app/files.h"
#include "app/locale.h"
#include "app/messages.h"
#include "app/mouse_pointer.h"
#include "transport/driver_service.h"
#include "transport/parallel_port.h"
#include "transport/port_io.h"
#include "transport/register_access.h"
#include "transport/usb_adapter.h"
#include "transport/usb_driver.h"

namespace kestrel {

// Every outside effect of the program, made by the entry point.
struct Seams {
  Clock& clock;
  EventLoop& loop;
  MousePointer& pointer;
  Messages& messages;
  Files& files;
  Locale& locale;
  UsbDriver& usb;
  PortIo& port;
  DriverService& driverService;
};

// The road to the sensor, built once over the seams.
class Core {
 public:
  explicit Core(const Seams& outside)
      : seams(outside),
        delay(seams.clock, seams.pointer),
        usb(seams.usb, seams.messages),
        port(seams.port, delay),
        registers(usb, port, delay) {}

  Seams seams;
  SoftwareDelay delay;
  UsbAdapter usb;
  ParallelPort port;
  RegisterAccess registers;
};

}  // namespace kestrel
