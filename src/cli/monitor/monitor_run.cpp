// The monitor's surroundings, made for a program without windows.
// SPDX-License-Identifier: MIT
#include "cli/monitor/monitor_run.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>
#include <ostream>

#include "database/sqlite_database.h"
#include "monitor/account.h"
#include "monitor/monitor.h"
#include "numeric/hash.h"
#include "numeric/runtime_error.h"
#include "publish/publisher.h"
#include "publish/service_manager.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

// What is only this monitor's own lies beside the usual archive, or else beside its own.
std::string LocalFile(const Surroundings& surroundings, const MonitorRun& run, const char* what) {
  const archive::Place& beside =
      surroundings.usualArchive.text.empty() ? run.place : surroundings.usualArchive;
  if (beside.IsServer()) {
    throw RuntimeError(
        "The monitor needs a folder on this machine for what it must know again: "
        "set XDG_DATA_HOME or HOME.");
  }
  const std::string key =
      run.plan.bench + '\n' + run.plan.sensor + '\n' + archive::Shown(run.place);
  std::array<char, 48> name{};
  std::snprintf(name.data(), name.size(), "%s-%016llx.db", what,
                static_cast<unsigned long long>(HashOf(key)));
  const fs::path folder = archive::PathOf(beside).parent_path();
  std::error_code ignored;  // opening the file tells the reason
  if (!folder.empty()) fs::create_directories(folder, ignored);
  const std::u8string path = (folder / name.data()).u8string();
  return {path.begin(), path.end()};
}

monitor::DiaryChoice DiaryFor(const Surroundings& surroundings, const MonitorRun& run) {
  const std::string file = LocalFile(surroundings, run, "monitor");
  return {
      .openLocal =
          [file] {
            return std::make_unique<database::SqliteDatabase>(database::SqliteChoice{.file = file});
          },
      .openArchive = [place = run.place] { return archive::Open(place); }};
}

// Lines of several threads, each whole and at once.
class Lines {
 public:
  explicit Lines(const Surroundings& surroundings) : surroundings_(surroundings) {}
  void Say(const std::string& line, bool isTrouble) {
    const std::lock_guard lock(mutex_);
    (isTrouble ? surroundings_.error : surroundings_.out) << line << std::endl;
  }

 private:
  const Surroundings& surroundings_;
  std::mutex mutex_;
};

// Lines of JSON in place of texts, all on the output stream.
monitor::Say SayInto(Lines& lines, bool isJson) {
  if (!isJson) {
    return [&lines](const std::string& line, bool isTrouble) { lines.Say(line, isTrouble); };
  }
  return [&lines](const std::string& line, bool isTrouble) {
    lines.Say(monitor::LineOf(monitor::Said{line, isTrouble}), false);
  };
}

// How the monitor stands: when that is another than before, and now and then.
class Accounts {
 public:
  Accounts(Clock& clock, Lines& lines, bool isOn) : clock_(clock), lines_(lines), isOn_(isOn) {}

  // From the start on to the end.
  void Follow(monitor::Monitor* monitor) { monitor_ = monitor; }
  void Look() {
    if (!isOn_ || monitor_ == nullptr) return;
    const auto now = clock_.Monotonic();
    if (now - looked_ < kLookEvery) return;
    Tell(monitor::AccountOf(*monitor_), now);
  }
  void Tell(monitor::Account account, std::chrono::nanoseconds now) {
    if (!isOn_) return;
    looked_ = now;
    monitor::Account lasting = account;
    lasting.nextIn.reset();
    if (lasting == last_ && now - told_ < kTellEvery) return;
    last_ = std::move(lasting);
    told_ = now;
    lines_.Say(monitor::LineOf(account), false);
  }

 private:
  static constexpr std::chrono::milliseconds kLookEvery{50};
  static constexpr std::chrono::seconds kTellEvery{2};

  Clock& clock_;
  Lines& lines_;
  bool isOn_;
  monitor::Monitor* monitor_ = nullptr;
  std::optional<monitor::Account> last_;
  std::chrono::nanoseconds looked_ = -kLookEvery;
  std::chrono::nanoseconds told_{0};
};

// None where the plan asks for nothing.
std::unique_ptr<publish::Publisher> PublisherFor(const Surroundings& surroundings,
                                                 const MonitorRun& run, const monitor::Say& say) {
  std::vector<publish::SettingLine> asked;
  for (const monitor::PlanLine& line : run.plan.publish) {
    asked.push_back({line.line, line.key, line.value});
  }
  const auto read = publish::SettingsOf(asked);
  const auto* settings = std::get_if<publish::Settings>(&read);
  if (settings == nullptr || settings->IsNothing()) return nullptr;
  return publish::MakePublisher({.settings = *settings,
                                 .names = {run.plan.bench, run.plan.sensor},
                                 .outbox = LocalFile(surroundings, run, "outbox"),
                                 .version = KESTREL_VERSION,
                                 .log = [say](const std::string& line) { say(line, true); }});
}

// Tells the service manager often enough that the program is alive.
class Heartbeat {
 public:
  explicit Heartbeat(Clock& clock) : clock_(clock), period_(publish::WatchdogPeriod()) {}
  void Beat() {
    if (!period_) return;
    const auto now = clock_.Monotonic();
    if (now < next_) return;
    next_ = now + *period_ / 4;
    publish::TellAlive();
  }

 private:
  Clock& clock_;
  std::optional<std::chrono::microseconds> period_;
  std::chrono::nanoseconds next_{0};
};

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
  surroundings.keepMemorySmall();
  if (run.endsWithInput) surroundings.hearInputEnd();
  surroundings.nameBench(run.plan.bench);
  const fs::path local = LocalFile(surroundings, run, "monitor");
  const std::string holder =
      surroundings.claim(local.stem().string() + "-" + local.parent_path().string());
  if (!holder.empty()) {
    throw RuntimeError("A monitor of " + run.plan.sensor + " at " + run.plan.bench +
                       " runs already: " + holder + ".");
  }
  monitor::Patience patience(surroundings.clock, surroundings.ending);
  Heartbeat heart(surroundings.clock);
  Lines lines(surroundings);
  const monitor::Say say = SayInto(lines, run.isJson);
  Accounts accounts(surroundings.clock, lines, run.isJson);
  Station station({.clock = surroundings.clock,
                   .files = surroundings.files,
                   .locale = surroundings.locale,
                   .hardware = surroundings.hardware,
                   .usePortDevice = surroundings.usePortDevice,
                   .watch = {.progress = {},
                             .interrupted =
                                 [&] {
                                   heart.Beat();
                                   accounts.Look();
                                   return patience.IsOver();
                                 }}},
                  run.connection);
  const auto publisher = PublisherFor(surroundings, run, say);
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
                            .publisher = publisher.get(),
                            .program = KESTREL_VERSION,
                            .say = say});
  monitor.Start();
  say("Monitoring " + run.plan.sensor + " at " + run.plan.bench + ", into " +
          archive::Shown(run.place) + ".",
      false);
  accounts.Follow(&monitor);
  bool isReady = false;
  do {
    if (!isReady)
      isReady = publish::TellReady("Monitoring " + run.plan.sensor + " at " + run.plan.bench);
    heart.Beat();
    accounts.Look();
  } while (monitor.Turn());
  publish::TellStopping();
  accounts.Follow(nullptr);
  monitor.Finish();
  accounts.Tell(monitor::AccountOf(monitor), surroundings.clock.Monotonic());
  say("Ended: " + std::to_string(monitor.State().records) + " records kept, " +
          std::to_string(monitor.State().missed) + " captures missed.",
      false);
  return ExitCode::Success;
}

}  // namespace kestrel
