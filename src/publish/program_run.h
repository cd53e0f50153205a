// A program of the user's, run once: no shell, not for ever, and no more of its output than is
// wanted. SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kestrel::publish {

struct ProgramChoice {
  std::vector<std::string> words{};  // program and arguments, handed over as they are
  std::string input{};               // what it reads; what a pipe holds, 64 KiB, is given
  // Beside those of this process; an empty value takes one away.
  std::map<std::string, std::string> variables{};
  std::chrono::milliseconds limit{30'000};
  std::size_t mostOutput = 4096;  // bytes; what comes after them is dropped
};

struct ProgramEnd {
  enum class Kind { Exited, Killed, NotStarted, TooLong, Stopped };
  Kind kind = Kind::Exited;
  int number = 0;        // status, signal, or errno
  std::string output{};  // of both its outputs, as they came
  bool isCut = false;    // there was more
};

// Runs it to its end, or ends it with all that it has started once the time is over or `stop` can
// be read.
[[nodiscard]] ProgramEnd RunProgram(const ProgramChoice& choice, int stop);

// The system had no room for it, of files, memory or processes: it may have later.
[[nodiscard]] bool MayStartLater(const ProgramEnd& end);

// "ended with status 1", "was ended after 30 s", "cannot be started: No such file or directory".
[[nodiscard]] std::string TextOf(const ProgramEnd& end);

}  // namespace kestrel::publish
