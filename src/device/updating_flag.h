// The sign that a window fills its controls from the sensor.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Set while a window fills its controls from the sensor, so that this writes nothing back. One
// inside another leaves the flag set: a message box lets a window become active in the middle.
class UpdatingFlag {
 public:
  explicit UpdatingFlag(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~UpdatingFlag() { flag_ = before_; }
  UpdatingFlag(const UpdatingFlag&) = delete;
  UpdatingFlag& operator=(const UpdatingFlag&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace kestrel
