// The edge of every window's handlers: where run-time errors end, and who may start when.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "seams/messages.h"

namespace kestrel {

// The edge of every handler of every window. A run-time error ends the handler with a message box
// that names it. While a register sequence is under way nothing that touches the sensor may start.
class HandlerEdge {
 public:
  struct Surroundings {
    std::function<bool()> busy;     // a register sequence is under way
    std::function<void()> refused;  // says so politely
    std::function<void()> after;    // after every handler
    // Whether no capture is waited for; says so politely where one is.
    std::function<bool()> idle = [] { return true; };
  };

  // While one exists, a handler that lets the event loop run keeps all others out.
  class Occupation {
   public:
    explicit Occupation(HandlerEdge& edge) : edge_(edge) { ++edge_.occupied_; }
    ~Occupation() { --edge_.occupied_; }
    Occupation(const Occupation&) = delete;
    Occupation& operator=(const Occupation&) = delete;

   private:
    HandlerEdge& edge_;
  };

  HandlerEdge(Messages& messages, Surroundings surroundings)
      : messages_(messages), surroundings_(std::move(surroundings)) {}

  void Run(const char* name, const std::function<void()>& handler);

  // Whether no handler is at work and no register sequence is under way: what happens by itself, on
  // a timer, may use the adapter.
  [[nodiscard]] bool Resting() const;

  // How many handlers are at work, one inside another.
  [[nodiscard]] int Depth() const { return running_; }

  // For what would disturb a capture: refused while one is waited for.
  void RunIdle(const char* name, const std::function<void()>& handler);

 private:
  Messages& messages_;
  Surroundings surroundings_;
  int occupied_ = 0;
  int running_ = 0;  // handlers, one inside another
};

}  // namespace kestrel
