// What is remembered of monitoring from one start of the program to the next.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace kestrel {

struct KeptWatch {
  QString file;        // of the plan that was shown last; empty for none
  bool isTold = true;  // the desktop, of alarms
  bool operator==(const KeptWatch&) const = default;
};

// From the user's file of it, and into it. What cannot be read is as it is at the first start.
[[nodiscard]] KeptWatch ReadKeptWatch();
void WriteKeptWatch(const KeptWatch& kept);

}  // namespace kestrel
