// A command's surroundings: the station it works with, and the streams it speaks to.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "archive/keeper.h"
#include "cli/exit_code.h"
#include "platform/hardware_switch.h"
#include "report/report_painter.h"
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
  bool showProgress = false;                 // the error stream is somebody's terminal
  archive::Place usualArchive{};             // where nothing else is chosen; none: nothing is kept
  std::string bench{};                       // the name of this computer
  std::filesystem::path setups{};            // where set-ups are kept; none: nowhere
  report::ReportPainter* painter = nullptr;  // null in the program that starts without one
  // Has the same command line done by the program that can print, where this one cannot. Throws
  // RuntimeError where there is none.
  std::function<ExitCode()> doneByPainter = {};
  // For commands that run until they are told to end: hears that from then on, and whether it was.
  std::function<void()> hearEnd = [] {};
  // Called by what runs for days: it gives memory that is free back at once.
  std::function<void()> keepMemorySmall = [] {};
  std::function<bool()> ending = [] { return false; };
  // Hears from then on when the standard input is closed, and takes that for an end.
  std::function<void()> hearInputEnd = [] {};
  // Time that goes on while the machine sleeps; none: the clock's own.
  std::function<std::chrono::nanoseconds()> sinceBoot = {};
  // Takes a name that one program at a time can have; returns who has it, empty where it is this
  // one.
  std::function<std::string(const std::string&)> claim = [](const auto&) { return std::string(); };
  // Names the bench to other programs that want the same device.
  std::function<void(const std::string&)> nameBench = [](const auto&) {};
};

// Where records are kept.
struct KeepingChoice {
  archive::Place place;  // none: nowhere
  bool named = false;    // the user named it
};

class Session {
 public:
  Session(const Surroundings& surroundings, const Connection& connection,
          const KeepingChoice& archive);

  // A line on the error stream.
  void Say(const std::string& text);
  // Says why a step failed; returns the exit code for it.
  ExitCode Fail(const Failure& failure);
  // Says what was worth a message on the way.
  void SayNotes();

  // One line on the error stream that the next one overwrites, where somebody is watching.
  void ShowProgress(const Progress& progress);
  void EndProgress();

  // Hands a record to the archive, where there is one and the record is new. Returns its name.
  archive::Uid Keep(const Record& record, const archive::Remarks& remarks,
                    const std::optional<archive::WideMark>& wide = {});
  // Waits until records are kept and says what stands in the way. False where the user named the
  // archive and it does not have them all.
  [[nodiscard]] bool EndKeeping();
  [[nodiscard]] const archive::Place& ArchivePlace() const { return archive_.place; }
  // Where set-ups are kept; empty where no folder is known.
  [[nodiscard]] const std::filesystem::path& SetupFolder() const { return surroundings_.setups; }
  // Whether Ctrl-C was pressed since last asked.
  [[nodiscard]] bool Interrupted() const { return surroundings_.interrupted(); }
  // Of commands that need one.
  [[nodiscard]] report::ReportPainter& Painter() const { return *surroundings_.painter; }
  [[nodiscard]] const std::string& Bench() const { return surroundings_.bench; }

 private:
  const Surroundings& surroundings_;
  KeepingChoice archive_;
  bool progressShown_ = false;
  std::unique_ptr<archive::Keeper> keeper_;  // from the first record on

 public:
  Station station;
};

}  // namespace kestrel
