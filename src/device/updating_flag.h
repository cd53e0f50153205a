// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Set while a window fills its controls from the sensor, so that this writes nothing back.
class UpdatingFlag {
 public:
  explicit UpdatingFlag(bool& flag) : flag_(flag) { flag_ = true; }
  ~UpdatingFlag() { flag_ = false; }
  UpdatingFlag(const UpdatingFlag&) = delete;
  UpdatingFlag& operator=(const UpdatingFlag&) = delete;

 private:
  bool& flag_;
};

}  // namespace kestrel
