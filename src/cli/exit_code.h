// The exit codes of the command-line program.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// What the command-line program ends with; documented in its manual page.
enum class ExitCode {
  Success = 0,
  Failure = 1,       // a message was shown: a file, a value or a step that failed
  Usage = 2,         // the command line makes no sense
  NoSensor = 3,      // no interface, or it was lost
  NotNew = 4,        // a capture ended before data were ready: they are those of the record before
  Different = 5,     // the sensor holds another set-up than the one it was compared with
  Interrupted = 130  // ended by Ctrl-C
};

}  // namespace kestrel
