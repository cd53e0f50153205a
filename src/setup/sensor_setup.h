// A set-up out of a sensor, and back into it with read-back.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "app/delay.h"
#include "seams/event_loop.h"
#include "setup/difference.h"
#include "setup/setup.h"
#include "transport/register_access.h"

namespace kestrel::setup {

struct SensorAccess {
  RegisterAccess& registers;
  SoftwareDelay& delay;
  EventLoop& loop;  // runs between two bands
};

// Told of each step, `done` of `total`; false ends the work before the next one.
using Follow = std::function<bool(const std::string& activity, int done, int total)>;

// Why the work came to no end.
struct Stopped {
  enum class Why { Lost, Cancelled, Busy, OtherProduct };
  Why why = Why::Lost;
  std::string text;  // one line for people
};

// What the sensor holds now: registers and bands, without name, time and identity. The bands come
// through the window of registers that ALM_PNTR selects, which is as before in the end; the bands
// known to the rest of the program stay. A sensor that carries out no command, because it records,
// is told apart from one that does.
[[nodiscard]] std::variant<Setup, Stopped> ReadSetup(const SensorAccess& sensor,
                                                     const Follow& follow);

struct RestoreChoice {
  bool keepNulls = false;    // X_NULL, Y_NULL, Z_NULL stay as the sensor has them
  bool saveInFlash = false;  // the registers too, so that they are there after a loss of power
};

struct RestoreReport {
  std::optional<Stopped> stopped;    // none: it came to its end
  std::vector<std::string> equal;    // held by the sensor before: "FFT_AVG", "option 0, band 1"
  std::vector<std::string> written;  // and read back as they were written
  std::vector<std::string> unsure;   // written, but not read back
  std::vector<std::string> open;     // not written
  std::vector<Difference> notHeld;   // what was read back is not what was written
  bool isInFlash = false;
  std::string flashTrouble;

  // The sensor holds the set-up now, and did what else was wanted.
  [[nodiscard]] bool IsWhole() const;
  // Lines for people: what was restored, what was not and why, and what can be done.
  [[nodiscard]] std::string Text() const;
};

// Writes what differs and reads it back: bands first, each saved in flash and retrieved again, then
// registers. What is equal is not written. Stopped in the middle, it says how far it came; once
// more it goes on with what still differs.
[[nodiscard]] RestoreReport Restore(const SensorAccess& sensor, const Setup& saved,
                                    const RestoreChoice& choice, const Follow& follow);

}  // namespace kestrel::setup
