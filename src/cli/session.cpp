// What goes to the error stream.
// SPDX-License-Identifier: MIT
#include "cli/session.h"

#include <ostream>

namespace kestrel {
namespace {

constexpr const char* kEraseLine = "\r\x1B[K";

}  // namespace

Session::Session(const Surroundings& surroundings, const Connection& connection)
    : surroundings_(surroundings),
      station({.clock = surroundings.clock,
               .files = surroundings.files,
               .locale = surroundings.locale,
               .hardware = surroundings.hardware,
               .usePortDevice = surroundings.usePortDevice,
               .watch = {.progress = [this](const Progress& now) { ShowProgress(now); },
                         .interrupted = surroundings.interrupted}},
              connection) {}

void Session::Say(const std::string& text) {
  EndProgress();
  surroundings_.error << text << '\n';
}

ExitCode Session::Fail(const Failure& failure) {
  Say(failure.text);
  switch (failure.kind) {
    case FailureKind::NoSensor:
      return ExitCode::NoSensor;
    case FailureKind::Interrupted:
      return ExitCode::Interrupted;
    case FailureKind::Refused:
      break;
  }
  return ExitCode::Failure;
}

void Session::SayNotes() {
  for (const std::string& note : station.TakeNotes()) Say(note);
}

void Session::ShowProgress(const Progress& progress) {
  if (!surroundings_.showProgress) return;
  surroundings_.error << kEraseLine << progress.activity << ' ';
  if (progress.total > 0) {
    surroundings_.error << progress.done * 100 / progress.total << " %" << std::flush;
  } else {
    surroundings_.error << progress.done << " s" << std::flush;
  }
  progressShown_ = true;
}

void Session::EndProgress() {
  if (progressShown_) surroundings_.error << kEraseLine << std::flush;
  progressShown_ = false;
}

}  // namespace kestrel
