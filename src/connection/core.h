// Core: all outside effects, the road to the sensor built over them, and the record at its end.
// SPDX-License-Identifier: MIT
#pragma once

#include "app/delay.h"
#include "app/messages_aside.h"
#include "record/current_record.h"
#include "seams/clock.h"
#include "seams/driver_service.h"
#include "seams/event_loop.h"
#include "seams/files.h"
#include "seams/locale.h"
#include "seams/messages.h"
#include "seams/mouse_pointer.h"
#include "seams/port_io.h"
#include "seams/usb_driver.h"
#include "transport/parallel_port.h"
#include "transport/register_access.h"
#include "transport/usb_adapter.h"

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

// The road to the sensor, built once over the seams, and the record at its end.
class Core {
 public:
  explicit Core(const Seams& outside)
      : messages(outside.messages),
        seams{outside.clock, outside.loop,  outside.pointer,
              messages,      outside.files, outside.locale,
              outside.usb,   outside.port,  outside.driverService},
        delay(seams.clock, seams.pointer),
        usb(seams.usb, seams.messages),
        port(seams.port, delay),
        registers(usb, port, delay) {}

  MessagesAside messages;  // on the way to the user
  Seams seams;
  SoftwareDelay delay;
  UsbAdapter usb;
  ParallelPort port;
  RegisterAccess registers;
  CurrentRecord record;
  // The sensor at its end is a simulated one: whoever puts it there says so.
  bool simulated = false;
};

}  // namespace kestrel
