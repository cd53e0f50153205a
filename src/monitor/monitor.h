// A plan carried out for days: captured, kept, judged, told; every fault becomes an incident.
// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "archive/keeper.h"
#include "monitor/alarm_book.h"
#include "monitor/diary.h"
#include "monitor/incidents.h"
#include "monitor/runner.h"
#include "monitor/seen_records.h"
#include "monitor/sensor.h"
#include "publish/publisher.h"

namespace kestrel::monitor {

// What is said while it runs; `isTrouble` for what somebody should look at.
using Say = std::function<void(const std::string& line, bool isTrouble)>;

struct Site {
  Clock& clock;
  SinceBoot sinceBoot;
  Station& station;  // its watch is interrupted where `patience` is over
  Patience& patience;
  archive::KeeperChoice keeper;
  DiaryChoice diary;
  publish::Publisher* publisher = nullptr;
  std::string program{};  // version
  Say say = [](const std::string&, bool) {};
  std::chrono::milliseconds glance{250};  // how long an end that was asked for may go unnoticed
};

struct Progress {
  bool isConnected = false;
  std::int64_t records = 0;  // safe on a disk since the start
  std::int64_t unsafe = 0;   // in memory only
  std::int64_t missed = 0;
  int incidentsOpen = 0;
  int alarmsOn = 0;
  std::optional<std::chrono::system_clock::time_point> lastRecord{};
  std::optional<std::chrono::nanoseconds> nextIn{};
  Next::Do doing = Next::Do::Wait;
};

// Records wait in memory up to this number where neither the archive nor this disk takes them;
// then captures are left out.
inline constexpr std::int64_t kMostUnsafe = 256;

class Monitor {
 public:
  // `bands`: of each step those that it is judged by.
  Monitor(const Plan& plan, std::vector<std::optional<BandTable>> bands, Site site);
  ~Monitor();
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  // Goes on from what the last run left. Throws DatabaseError where that cannot be read.
  void Start();
  // The next thing that is to be done, a wait of at most a glance among them. False at the end.
  bool Turn();
  // Ends: what was captured is kept, and what the next start must know.
  void Finish();

  // What has become safe since the last look, and what stands in the way of the rest. Part of a
  // turn.
  void LookAtKeeping();

  // These may be asked while a turn waits for the sensor, by whoever its station tells.
  [[nodiscard]] Progress State();
  [[nodiscard]] std::vector<archive::JournalEntry> OpenIncidents() const;
  [[nodiscard]] std::vector<archive::JournalEntry> StandingAlarms() const;

 private:
  struct Handed {  // to the keeper, and not yet known to be on a disk
    archive::Uid uid{};
  };

  void NoteIncident(const archive::JournalEntry& entry);
  void Look();  // at clocks, archive, broker
  void LookAtClocks();
  void LookAtBroker(const Now& now);
  void CountPassed();
  void Do(const Next& next);
  void Connect();
  void Capture(std::size_t step);
  void BeginSeries();
  void LookAtCount();
  void Fetch();
  void FetchStored();
  void Note(const SensorNews& news);
  // True where it gave something.
  template <typename Value>
  bool Came(const Tried<Value>& tried, std::int64_t missed);
  void Missed(const Trouble& trouble, std::int64_t captures);
  void Keep(const std::vector<Record>& records, std::size_t step);
  bool KeepFromSensor(const Record& record, bool isInFlash);
  void Hand(const Record& record, const archive::Uid& uid,
            const std::optional<archive::WideMark>& wide);
  void Judge(const Record& record, const archive::Uid& uid, std::size_t step);
  void JudgeWide(const std::vector<Record>& records, const archive::Uid& uid);
  void Tell(std::vector<AlarmNews> news);
  void TellAlarms();
  void NoteUntold();
  void NoteReplaced(std::int64_t lost, const Now& now);
  void TellStatus(publish::State state);
  void RestorePast();
  void Wait(std::chrono::nanoseconds until);
  [[nodiscard]] Now Time() const { return clocks_.Read(); }

  const Plan plan_;
  const std::vector<std::optional<BandTable>> bands_;
  Site site_;
  ClockWatch clocks_;
  publish::Names names_;
  Diary diary_;
  Incidents incidents_;
  AlarmBook alarms_;
  ThresholdJudge judge_;
  Sensor sensor_;
  Runner runner_;
  std::unique_ptr<archive::Keeper> keeper_;
  std::deque<Handed> handed_;
  std::deque<publish::Alarm> untold_;  // not yet safe at the publisher
  SeenRecords seen_;                   // of the sensor's own series
  std::deque<std::string> unsaid_;     // of alarms that are not yet on the disk
  // Every capture that was due up to then is dealt with; is on a disk.
  std::chrono::system_clock::time_point dealt_{};
  std::chrono::system_clock::time_point accounted_{};
  archive::Uid lastSaid_{};
  Next::Do doing_ = Next::Do::Connect;
  int incidentsTold_ = 0;
  std::int64_t safe_ = 0;
  std::int64_t refused_ = 0;
  std::optional<std::chrono::system_clock::time_point> lastRecord_{};
  std::optional<std::chrono::nanoseconds> brokerGone_{};  // since
};

}  // namespace kestrel::monitor
