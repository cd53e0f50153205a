// A monitor over a simulated sensor, three clocks, an archive and a disk, each of which can fail.
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "archive/journal.h"
#include "database/sqlite_database.h"
#include "monitor/monitor.h"
#include "simulator/simulated_hardware.h"
#include "support/failing_usb_driver.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/temporary_folder.h"

namespace kestrel {

// Whatever is waited for has passed at once; the time of day can be set, the machine can sleep.
class WorldClock : public Clock {
 public:
  [[nodiscard]] double SecondsSinceMidnight() override {
    return std::fmod(std::chrono::duration<double>(now_).count(), 86400.0);
  }
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override {
    return kStart + std::chrono::duration_cast<std::chrono::system_clock::duration>(Boot() + set_);
  }
  [[nodiscard]] std::chrono::nanoseconds Monotonic() override { return now_; }
  void WaitUntil(std::chrono::nanoseconds deadline) override {
    now_ = std::max(now_, deadline);
    if (then_ && now_ >= thenAt_) std::exchange(then_, nullptr)();
  }
  void RunEmptyLoop(std::int32_t /*passes*/, std::int32_t /*iterations*/) override {}

  [[nodiscard]] std::chrono::nanoseconds Boot() const { return now_ + slept_; }
  void Sleep(std::chrono::nanoseconds time) { slept_ += time; }
  void Set(std::chrono::nanoseconds by) { set_ += by; }
  // Something happens after so long, whatever is under way.
  void After(std::chrono::nanoseconds time, std::function<void()> then) {
    thenAt_ = now_ + time;
    then_ = std::move(then);
  }

 private:
  static constexpr std::chrono::system_clock::time_point kStart{std::chrono::seconds{1800000000}};
  std::chrono::nanoseconds now_{std::chrono::seconds{100}};
  std::chrono::nanoseconds slept_{0};
  std::chrono::nanoseconds set_{0};
  std::chrono::nanoseconds thenAt_{0};
  std::function<void()> then_;
};

// Every statement fails while a fault is set.
class FailingDatabase : public database::Database {
 public:
  using Switch = std::shared_ptr<std::atomic<int>>;  // of database::Fault; -1: none
  FailingDatabase(const std::string& file, Switch fault)
      : fault_(std::move(fault)), under_(Checked(file)) {}

  using Database::Run;
  void Run(const std::string& sql, const database::Values& values,
           const database::OnRow& row) override {
    Check();
    under_->Run(sql, values, row);
  }
  void Begin() override {
    Check();
    under_->Begin();
  }
  void Commit() override {
    Check();
    under_->Commit();
  }
  void Rollback() override { under_->Rollback(); }
  void Cancel() override { under_->Cancel(); }
  [[nodiscard]] const char* KeyType() const override { return under_->KeyType(); }
  [[nodiscard]] bool HasTable(const std::string& name) override { return under_->HasTable(name); }
  [[nodiscard]] bool IsBlank() override { return under_->IsBlank(); }
  void LockSchema() override { under_->LockSchema(); }
  void ReleaseMemory() override { under_->ReleaseMemory(); }
  [[nodiscard]] std::int64_t Size() override { return under_->Size(); }
  [[nodiscard]] std::vector<std::string> Damage() override { return under_->Damage(); }

 private:
  void Check() const {
    if (*fault_ >= 0) {
      throw database::DatabaseError(static_cast<database::Fault>(fault_->load()), "it fails");
    }
  }
  std::unique_ptr<database::Database> Checked(const std::string& file) {
    Check();
    return std::make_unique<database::SqliteDatabase>(database::SqliteChoice{.file = file});
  }

  Switch fault_;
  std::unique_ptr<database::Database> under_;
};

// Counts what comes, each id once, and hands it on where there is somebody.
class CountingPublisher : public publish::Publisher {
 public:
  void Tell(const publish::Levels& told) override {
    ++levels;
    if (next) next->Tell(told);
  }
  void Tell(const publish::Status& told) override {
    status = told;
    if (next) next->Tell(told);
  }
  void Tell(const publish::Spectrum& told) override {
    ++spectra;
    if (next) next->Tell(told);
  }
  bool Tell(const publish::Alarm& alarm) override {
    if (isFull || (next && !next->Tell(alarm))) return false;
    if (ids.insert(alarm.id).second) alarms.push_back(alarm);
    return true;
  }
  publish::PublisherState State() override {
    if (next) return next->State();
    return {.hasBroker = true, .isConnected = isConnected};
  }

  int levels = 0;
  int spectra = 0;
  publish::Status status{};
  std::vector<publish::Alarm> alarms;
  std::set<std::string> ids;
  bool isConnected = true;
  bool isFull = false;
  std::unique_ptr<publish::Publisher> next{};
};

class MonitoredWorld {
 public:
  explicit MonitoredWorld(std::string plan, Scenario scenario = RunningMachine())
      : plan_(std::get<monitor::Plan>(monitor::PlanOf(plan))),
        hardware_(clock, std::move(scenario)) {}
  ~MonitoredWorld() { Kill(); }
  MonitoredWorld(const MonitoredWorld&) = delete;
  MonitoredWorld& operator=(const MonitoredWorld&) = delete;

  using Time = std::chrono::nanoseconds;

  void Start() {
    isEnding_ = false;
    patience_ = std::make_unique<monitor::Patience>(clock, [this] { return isEnding_; });
    Connection connection;
    connection.adapter = plan_.road.adapter;
    station_ = std::make_unique<Station>(
        StationSite{
            .clock = clock,
            .files = files_,
            .locale = locale_,
            .hardware = {&usb_, &hardware_.Port(), &hardware_.Service()},
            .watch = {.progress = {}, .interrupted = [this] { return patience_->IsOver(); }}},
        connection);
    monitor_ = std::make_unique<monitor::Monitor>(plan_, bands, SiteNow());
    monitor_->Start();
    startedAt_ = clock.Boot();
    if (++starts_ == 1) firstStart_ = startedAt_;
  }
  // Goes on for so long, in the time of the world.
  void Run(Time time) {
    const Time end = clock.Boot() + time;
    while (clock.Boot() < end) Turn();
  }
  void Turn() {
    if (!monitor_->Turn()) throw std::logic_error("it ended");
    Throttle();
  }
  // In an orderly way.
  void Stop() {
    Settle();
    AskToEnd();
    GoToTheEnd();
  }
  void AskToEnd() { isEnding_ = true; }
  // That was asked for, or will be.
  void GoToTheEnd() {
    while (monitor_->Turn()) {
    }
    monitor_->Finish();
    NoteAsked();
    Drop();
  }
  // What was captured is on a disk.
  void Settle() {
    Turn();
    const auto patience = std::chrono::steady_clock::now() + std::chrono::minutes{2};
    while (monitor_->State().unsafe > 0) {
      if (std::chrono::steady_clock::now() > patience) throw std::logic_error("it is not kept");
      std::this_thread::sleep_for(std::chrono::microseconds{200});
      monitor_->LookAtKeeping();
    }
    monitor_->LookAtKeeping();
  }
  // With nothing noted.
  void Kill() {
    if (monitor_) NoteAsked();
    Drop();
  }

  [[nodiscard]] monitor::Monitor& Monitor() { return *monitor_; }
  [[nodiscard]] SimulatedHardware& Hardware() { return hardware_; }
  // Between the program and the adapter.
  [[nodiscard]] FailingUsbDriver& Usb() { return usb_; }
  [[nodiscard]] std::string ArchiveFile() const { return FileNamed("archive.db"); }
  [[nodiscard]] archive::Archive OpenArchive() const {
    return archive::Archive(
        std::make_unique<database::SqliteDatabase>(database::SqliteChoice{.file = ArchiveFile()}));
  }
  // Captures that were due while it ran.
  [[nodiscard]] std::int64_t Asked() const { return asked_; }
  // Those that would have been due until now if it had never ended.
  [[nodiscard]] std::int64_t GoneBy() const {
    return (clock.Boot() - firstStart_) / Time{plan_.every} + 1;
  }
  [[nodiscard]] std::int64_t Starts() const { return starts_; }

  WorldClock clock;
  CountingPublisher publisher;
  bool isPublished = true;
  FailingDatabase::Switch archiveFault = std::make_shared<std::atomic<int>>(-1);
  FailingDatabase::Switch diskFault = std::make_shared<std::atomic<int>>(-1);
  std::vector<std::optional<BandTable>> bands{};
  std::vector<std::string> said;
  std::size_t mostSaid = 100000;
  std::chrono::milliseconds glance{500};

 private:
  [[nodiscard]] std::string FileNamed(const char* name) const {
    return (folder_.path() / name).string();
  }
  monitor::Site SiteNow() {
    const auto open = [](const std::string& file, const FailingDatabase::Switch& fault) {
      return [file, fault] {
        return archive::Archive(std::make_unique<FailingDatabase>(file, fault));
      };
    };
    const std::string waiting = FileNamed("waiting.db");
    return {.clock = clock,
            .sinceBoot = [this] { return clock.Boot(); },
            .station = *station_,
            .patience = *patience_,
            .keeper = {.open = open(ArchiveFile(), archiveFault),
                       .openWaiting = open(waiting, diskFault),
                       .hasWaiting = [waiting] { return std::filesystem::exists(waiting); },
                       .retry = std::chrono::milliseconds{1}},
            .diary = {.openLocal =
                          [this] {
                            return std::make_unique<FailingDatabase>(FileNamed("monitor.db"),
                                                                     diskFault);
                          },
                      .openArchive = open(ArchiveFile(), archiveFault),
                      .retry = std::chrono::milliseconds{1}},
            .publisher = isPublished ? &publisher : nullptr,
            .program = "1.2.3",
            .say =
                [this](const std::string& line, bool /*isTrouble*/) {
                  if (said.size() < mostSaid) said.push_back(line);
                },
            .glance = glance};
  }
  // The disk is of the real world.
  void Throttle() {
    constexpr std::int64_t kMost = 32;
    while (*archiveFault < 0 && monitor_->State().unsafe > kMost) {
      std::this_thread::sleep_for(std::chrono::microseconds{200});
      monitor_->LookAtKeeping();
    }
  }
  void NoteAsked() {
    asked_ += (clock.Boot() - startedAt_) / Time{plan_.every} + 1;
    // What is due and neither begun nor told as missed is the next run's to tell.
    const Time next = monitor_->State().nextIn.value_or(Time{1});
    if (next <= Time{0}) asked_ -= -next / Time{plan_.every} + 1;
  }
  void Drop() {
    monitor_.reset();
    station_.reset();
    patience_.reset();
  }

  TemporaryFolder folder_;
  MemoryFiles files_;
  FixedLocale locale_;
  monitor::Plan plan_;
  SimulatedHardware hardware_;
  FailingUsbDriver usb_{hardware_.Adapter()};
  bool isEnding_ = false;
  std::unique_ptr<monitor::Patience> patience_;
  std::unique_ptr<Station> station_;
  std::unique_ptr<monitor::Monitor> monitor_;
  Time startedAt_{0};
  Time firstStart_{0};
  std::int64_t starts_ = 0;
  std::int64_t asked_ = 0;
};

}  // namespace kestrel
