// The seam to the mouse pointer, and the hourglass as a guard.
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

// Shows the hourglass while it exists.
class Hourglass {
 public:
  explicit Hourglass(MousePointer& pointer) : pointer_(pointer) { pointer_.ShowHourglass(); }
  ~Hourglass() { pointer_.ShowDefault(); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  MousePointer& pointer_;
};

}  // namespace kestrel
