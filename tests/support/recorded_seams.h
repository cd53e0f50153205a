// A program's surroundings that follow a script and remember what was asked of them.
// SPDX-License-Identifier: MIT
#pragma once

#include "connection/core.h"
#include "support/fixed_locale.h"
#include "support/map_driver_service.h"
#include "support/memory_files.h"
#include "support/recording_boards.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/recording_port.h"
#include "support/scripted_loop.h"

namespace kestrel {

class RecordedSeams {
 protected:
  Seams All() {
    return {.clock = clock_,
            .loop = loop_,
            .pointer = pointer_,
            .messages = messages_,
            .files = files_,
            .locale = locale_,
            .usb = boards_,
            .port = pins_,
            .driverService = service_};
  }

  RecordingPort pins_;
  PortClock clock_{pins_};
  ScriptedLoop loop_{clock_};
  RecordingPointer pointer_;
  RecordingMessages messages_;
  MemoryFiles files_;
  FixedLocale locale_;
  RecordingBoards boards_;
  MapDriverService service_;
};

}  // namespace kestrel
