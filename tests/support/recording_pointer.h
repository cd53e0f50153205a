// The pointers shown, kept in order.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "seams/mouse_pointer.h"

namespace kestrel {

// Keeps the pointers shown, "hourglass" or "default", in order.
class RecordingPointer : public MousePointer {
 public:
  void ShowHourglass() override { shown_.emplace_back("hourglass"); }
  void ShowDefault() override { shown_.emplace_back("default"); }

  [[nodiscard]] const std::vector<std::string>& Shown() const { return shown_; }

 private:
  std::vector<std::string> shown_;
};

}  // namespace kestrel
