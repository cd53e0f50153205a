// How programs of the command line begin: the system made, Ctrl-C heard, faults told.
// SPDX-License-Identifier: MIT
#pragma once

#include "report/report_painter.h"

namespace kestrel {

// What such a program's `main` does. Without a painter, commands that need one are done by the
// program that has one.
[[nodiscard]] int Enter(int argc, char** argv, report::ReportPainter* painter);

}  // namespace kestrel
