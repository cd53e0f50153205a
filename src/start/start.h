// The start of the program: Main.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "app/program_state.h"
#include "connection/core.h"

namespace kestrel {

struct StartOptions {
  bool quickStart = false;  // no trials of the delay, no loading window
  // InterfaceType to begin with where there is no CommPort.cfg.
  std::int16_t interfaceWithoutConfig = kNoInterface;
};

// The windows of the start-up.
class StartWindows {
 public:
  virtual ~StartWindows() = default;
  virtual void ShowLoading(const std::string& caption, const std::string& text) = 0;
  virtual void SetLoadingText(const std::string& text) = 0;
  virtual void HideLoading() = 0;
  virtual void ShowMainWindow() = 0;
};

// Starts the program, up to the main window on the screen. Whatever is thrown before that is told
// in a message that names the step, and the next step is taken; an interface that could not be
// prepared is none.
void Main(Core& core, StartWindows& windows, const StartOptions& options);

}  // namespace kestrel
