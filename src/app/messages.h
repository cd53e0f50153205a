// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel {

// Message boxes with an OK button; they return once the user has dismissed them.
class Messages {
 public:
  virtual ~Messages() = default;

  virtual void Show(const std::string& text, const std::string& title) = 0;
  void Show(const std::string& text) { Show(text, ""); }
};

}  // namespace kestrel
