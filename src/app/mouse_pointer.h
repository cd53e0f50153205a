// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// The mouse pointer over all windows of the program.
class MousePointer {
 public:
  virtual ~MousePointer() = default;
  virtual void ShowHourglass() = 0;
  virtual void ShowDefault() = 0;
};

}  // namespace kestrel
