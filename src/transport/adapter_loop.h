// The loop of the adapter debug window and its timer.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

#include "seams/clock.h"
#include "seams/messages.h"
#include "transport/adapter_debug.h"

namespace kestrel {

inline constexpr const char* kLoopCaption = "Loop";
inline constexpr const char* kStopLoopCaption = "Stop";

// The loop's button and its timer.
class AdapterLoopView {
 public:
  virtual ~AdapterLoopView() = default;
  [[nodiscard]] virtual std::string LoopCaption() = 0;
  virtual void SetLoopCaption(const std::string& caption) = 0;
  [[nodiscard]] virtual std::string LoopWaitText() = 0;  // ms between transfers
  // Tick() once after this time, from the event loop; replaces an earlier call.
  virtual void TickAfter(std::chrono::milliseconds time) = 0;
  virtual void StopTicks() = 0;
};

// Sends the same frames again and again until StopSpiLoop is set or the adapter is lost. Between
// two transfers the program is back in its event loop; each transfer is complete in itself.
class AdapterLoop {
 public:
  AdapterLoop(AdapterDebug& debug, Clock& clock, Messages& messages, AdapterLoopView& view)
      : debug_(debug), clock_(clock), messages_(messages), view_(view) {}

  [[nodiscard]] bool Running() { return view_.LoopCaption() == kStopLoopCaption; }

  // Starts the loop, or stops it.
  void cmdLoop_Click();

  void Stop();

  // The timer's turn: the next transfer if it is due. `mayTransfer` is false while something else
  // uses the sensor; the transfer then waits.
  void Tick(bool mayTransfer);

 private:
  void Start();
  void TickWhenDue();

  AdapterDebug& debug_;
  Clock& clock_;
  Messages& messages_;
  AdapterLoopView& view_;
  std::chrono::milliseconds wait_{0};
  std::chrono::nanoseconds due_{0};
};

}  // namespace kestrel
