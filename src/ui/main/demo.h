// Captures without a display, with pictures and files of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "ui/main/frm1.h"

namespace kestrel {

// Takes one capture in each record mode by operating the main window as a user would, and saves a
// picture of the window and the data-log file of each into `folder`. Prints where they are; returns
// the exit code of the program, 0 when every capture gave both.
int RunDemo(frm1& window, const QString& folder);

// Takes spectra and prints the alarm state of each, with a picture whenever it changes. Returns the
// program's exit code.
[[nodiscard]] int RunAlarmDemo(frm1& window, const QString& folder);

}  // namespace kestrel
