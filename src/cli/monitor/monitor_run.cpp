// The monitor's surroundings, made for a program without windows.
// SPDX-License-Identifier: MIT
#include "cli/monitor/monitor_run.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <ostream>

#include "database/sqlite_database.h"
#include "monitor/monitor.h"
#include "numeric/hash.h"
#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

// What is only this monitor's own lies beside the usual archive, or else beside its own.
std::string LocalFile(const Surroundings& surroundings, const MonitorRun& run) {
  const archive::Place& beside =
      surroundings.usualArchive.text.empty() ? run.place : surroundings.usualArchive;
  if (beside.IsServer()) {
    throw RuntimeError(
        "The monitor needs a folder on this machine for what it must know again: "
        "set XDG_DATA_HOME or HOME.");
  }
  const std::string key =
      run.plan.bench + '\n' + run.plan.sensor + '\n' + archive::Shown(run.place);
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), "monitor-%016llx.db",
                static_cast<unsigned long long>(HashOf(key)));
  const fs::path folder = archive::PathOf(beside).parent_path();
  std::error_code ignored;  // opening the file tells the reason
  if (!folder.empty()) fs::create_directories(folder, ignored);
  const std::u8string path = (folder / name.data()).u8string();
  return {path.begin(), path.end()};
}

monitor::DiaryChoice DiaryFor(const Surroundings& surroundings, const MonitorRun& run) {
  const std::string file = LocalFile(surroundings, run);
  return {
      .openLocal =
          [file] {
            return std::make_unique<database::SqliteDatabase>(database::SqliteChoice{.file = file});
          },
      .openArchive = [place = run.place] { return archive::Open(place); }};
}

}  // namespace

Connection ConnectionOf(const monitor::Road& road, const Connection& given) {
  if (given.simulate || given.adapter || given.parallelAddress || !given.portDevice.empty()) {
    return given;
  }
  return {.simulate = road.simulated,
          .scenario = road.scenario,
          .adapter = road.adapter,
          .parallelAddress = road.parallelAddress,
          .portDevice = road.portDevice};
}

ExitCode RunMonitor(const Surroundings& surroundings, const MonitorRun& run) {
  surroundings.hearEnd();
  surroundings.nameBench(run.plan.bench);
  monitor::Patience patience(surroundings.clock, surroundings.ending);
  Station station({.clock = surroundings.clock,
                   .files = surroundings.files,
                   .locale = surroundings.locale,
                   .hardware = surroundings.hardware,
                   .usePortDevice = surroundings.usePortDevice,
                   .watch = {.progress = {}, .interrupted = [&] { return patience.IsOver(); }}},
                  run.connection);
  const auto say = [&](const std::string& line, bool isTrouble) {
    (isTrouble ? surroundings.error : surroundings.out) << line << std::endl;
  };
  const auto sinceBoot = [&] {
    return surroundings.sinceBoot ? surroundings.sinceBoot() : surroundings.clock.Monotonic();
  };
  monitor::Monitor monitor(run.plan, run.bands,
                           {.clock = surroundings.clock,
                            .sinceBoot = sinceBoot,
                            .station = station,
                            .patience = patience,
                            .keeper = archive::ChoiceFor(run.place, surroundings.usualArchive),
                            .diary = DiaryFor(surroundings, run),
                            .program = KESTREL_VERSION,
                            .say = say});
  monitor.Start();
  say("Monitoring " + run.plan.sensor + " at " + run.plan.bench + ", into " +
          archive::Shown(run.place) + ".",
      false);
  while (monitor.Turn()) {
  }
  monitor.Finish();
  say("Ended: " + std::to_string(monitor.State().records) + " records kept, " +
          std::to_string(monitor.State().missed) + " captures missed.",
      false);
  return ExitCode::Success;
}

}  // namespace kestrel
