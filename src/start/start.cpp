// The start of the program, step by step.
// SPDX-License-Identifier: MIT
#include "start/start.h"

#include <exception>
#include <functional>
#include <string>

#include "app/config_file.h"
#include "app/plot_scale.h"
#include "connection/init_interface.h"
#include "device/register_models.h"

namespace kestrel {
namespace {

constexpr const char* kLoadingText =
    "\r\n"
    "  LOADING..."
    "\r\n"
    "\r\n"
    "  Setting up Delay function"
    "\r\n"
    "\r\n"
    "  3 second trial delay.";

// Where not even the message can be shown, the start goes on all the same.
void Tell(Messages& messages, const char* name, const char* reason) {
  try {
    messages.Show(std::string(name) + "\n" + reason);
  } catch (...) {
    return;
  }
}

// One step of the start: a fault in it is told, and the next step is taken. Returns whether it was
// taken to its end.
bool Step(Core& core, const char* name, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const std::exception& error) {
    Tell(core.seams.messages, name, error.what());
  } catch (...) {
    Tell(core.seams.messages, name, "An unknown fault");
  }
  return false;
}

// The loading window must be painted before the trials block the program. Where the trials fail,
// because of a timer that stands still, the program can go on: the waits follow another clock.
void MeasureDelay(Core& core, StartWindows& windows, bool quickStart) {
  core.delay.ForgetCalibration();
  if (quickStart) {
    core.delay.SkipCalibration();
    return;
  }
  Step(core, "Main", [&] {
    windows.ShowLoading(std::string(kApplicationTitle) + "  ", kLoadingText);
    core.seams.loop.Yield();
  });
  Step(core, "CalibrateDelay", [&] { core.delay.CalibrateDelay(); });
}

void PrepareInterface(Core& core, std::int16_t interfaceWithoutConfig) {
  bool chosen = false;
  Step(core, "ReadConfigFile",
       [&] { chosen = ReadConfigFile(core.seams.files, core.seams.messages); });
  if (!chosen) ChooseInterface(interfaceWithoutConfig);
  if (Step(core, "InitInterface", [&] { InitInterface(core); })) return;
  core.registers.Use(kNoInterface);
}

}  // namespace

void Main(Core& core, StartWindows& windows, const StartOptions& options) {
  SetColours();
  MeasureDelay(core, windows, options.quickStart);
  SetStartDefaults();
  PrepareInterface(core, options.interfaceWithoutConfig);
  InitRegisterTable(core.registers);
  Step(core, "Main", [&] { windows.SetLoadingText(" "); });
  Step(core, "Main", [&] { windows.HideLoading(); });
  TakePlotScale(1.0);
  windows.ShowMainWindow();
}

}  // namespace kestrel
