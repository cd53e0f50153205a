// What of a desk knows what.
// SPDX-License-Identifier: MIT
#include "acquisition/desk.h"

namespace kestrel {

Desk::Desk(Core& core, const DeskViews& views)
    : alarms(core.registers, views.alarms),
      plot(core.record, views.plot, alarms, core.seams.loop, core.seams.messages),
      overlay(plot, views.bands),
      status(core.registers, alarms, core.seams.loop, views.status),
      log(core.record, core.seams.files, core.seams.locale, core.seams.loop, views.log),
      delay(core.seams.loop),
      readout(core, status, alarms, plot, views.plot, log, views.readout),
      cycle(core, delay, status, alarms, readout, plot, overlay, views.capture),
      settings(core.registers, status, alarms, core.seams.messages, delay, views.settings),
      cursor(core.record, views.cursor) {}

}  // namespace kestrel
