// What goes to the error stream.
// SPDX-License-Identifier: MIT
#include "cli/session.h"
#include "record/record_count.h"

#include <ostream>

namespace kestrel {
namespace {

constexpr const char* kEraseLine = "\r\x1B[K";
// Long enough for a server that has to be given up.
constexpr std::chrono::seconds kKeepingPatience{30};
constexpr std::chrono::milliseconds kRetry{200};

}  // namespace

Session::Session(const Surroundings& surroundings, const Connection& connection,
                 const KeepingChoice& archive)
    : surroundings_(surroundings),
      archive_(archive),
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

archive::Uid Session::Keep(const Record& record, const archive::Remarks& remarks,
                           const std::optional<archive::WideMark>& wide) {
  const archive::Uid uid = archive::NewUid();
  if (archive_.place.text.empty() || !record.Taken() || !record.IsNew()) return uid;
  if (!keeper_) {
    auto choice = archive::ChoiceFor(archive_.place, surroundings_.usualArchive);
    choice.retry = kRetry;
    keeper_ = std::make_unique<archive::Keeper>(std::move(choice));
  }
  keeper_->Keep({.uid = uid,
                 .record = record,
                 .remarks = remarks,
                 .program = KESTREL_VERSION,
                 .bench = surroundings_.bench,
                 .wide = wide});
  return uid;
}

bool Session::EndKeeping() {
  if (!keeper_) return true;
  const bool isSafe = keeper_->Finish(kKeepingPatience);
  const archive::KeeperState state = keeper_->State();
  keeper_.reset();
  if (!state.trouble.empty()) Say(state.trouble);
  if (state.waiting > 0) {
    Say(RecordCount(state.waiting) + " will be brought to the archive as soon as it can be had.");
  }
  if (!isSafe) Say(RecordCount(state.unsafe) + " could be kept nowhere.");
  const bool hasAll = isSafe && state.waiting == 0 && state.refused == 0;
  return hasAll || !archive_.named;
}

void Session::EndProgress() {
  if (progressShown_) surroundings_.error << kEraseLine << std::flush;
  progressShown_ = false;
}

}  // namespace kestrel
