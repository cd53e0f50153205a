// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "app/messages.h"

namespace kestrel {

// The edge of every handler of every window. A run-time error ends the handler with a message box
// that names it. While a register sequence is under way nothing that touches the sensor may start.
class HandlerEdge {
 public:
  struct Surroundings {
    std::function<bool()> busy;     // a register sequence is under way
    std::function<void()> refused;  // says so politely
    std::function<void()> after;    // after every handler
  };

  HandlerEdge(Messages& messages, Surroundings surroundings)
      : messages_(messages), surroundings_(std::move(surroundings)) {}

  void Run(const char* name, const std::function<void()>& handler);

 private:
  Messages& messages_;
  Surroundings surroundings_;
};

}  // namespace kestrel
