// A command's surroundings: the station it works with, and the streams it speaks to.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include "cli/exit_code.h"
#include "platform/hardware_switch.h"
#include "station/station.h"

namespace kestrel {

// Where the command-line program runs; made by its entry point.
struct Surroundings {
  Clock& clock;
  Files& files;
  Locale& locale;
  Hardware hardware;  // the system's devices
  // Takes a device for the parallel port, where the system has names for ports.
  std::function<void(const std::string&)> usePortDevice = [](const auto&) {};  // GCOVR_EXCL_LINE
  std::function<bool()> interrupted;  // Ctrl-C since last asked
  std::ostream& out;
  std::ostream& error;
  bool showProgress = false;  // the error stream is somebody's terminal
};

class Session {
 public:
  Session(const Surroundings& surroundings, const Connection& connection);

  // A line on the error stream.
  void Say(const std::string& text);
  // Says why a step failed; returns the exit code for it.
  ExitCode Fail(const Failure& failure);
  // Says what was worth a message on the way.
  void SayNotes();

  // One line on the error stream that the next one overwrites, where somebody is watching.
  void ShowProgress(const Progress& progress);
  void EndProgress();

 private:
  const Surroundings& surroundings_;
  bool progressShown_ = false;

 public:
  Station station;
};

}  // namespace kestrel
