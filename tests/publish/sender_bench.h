// A sender with short patience, its outbox, and alarms to send.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "database/sqlite_database.h"
#include "publish/mqtt_sender.h"
#include "support/temporary_folder.h"

namespace kestrel::publish {

inline const Names kNames{"bench 1", "pump/2"};
inline const std::string kAlarms = "kestrel/bench 1/pump%2F2/alarm";
inline const std::string kStatuses = "kestrel/bench 1/pump%2F2/status";
inline const std::string kLevels = "kestrel/bench 1/pump%2F2/levels";
inline const std::string kSpectra = "kestrel/bench 1/pump%2F2/spectrum";

[[nodiscard]] inline Letter LetterOf(int number) {
  Alarm alarm{.id = "alarm " + std::to_string(number), .of = kNames, .level = number};
  return {.id = alarm.id, .topic = TopicOf(kNames, kAlarmLeaf), .payload = JsonOf(alarm)};
}

// Numbers of letters that came, in turn.
[[nodiscard]] inline std::vector<int> NumbersOf(const std::vector<std::string>& payloads) {
  std::vector<int> numbers;
  for (const std::string& payload : payloads) {
    const std::string id = nlohmann::json::parse(payload)["id"];
    numbers.push_back(std::stoi(id.substr(id.find(' ') + 1)));
  }
  return numbers;
}

// What is wrong with numbers that should be 0 to `count` − 1, each once; empty where nothing is.
[[nodiscard]] inline std::string CountFaultsOf(const std::vector<int>& numbers, int count) {
  std::string faults;
  for (int number = 0; number < count; ++number) {
    const auto times = std::count(numbers.begin(), numbers.end(), number);
    if (times != 1) faults += std::to_string(number) + " came " + std::to_string(times) + "x; ";
  }
  return faults;
}

// The same, in turn.
[[nodiscard]] inline std::string FaultsOf(const std::vector<int>& numbers, int count) {
  const bool isInTurn = std::is_sorted(numbers.begin(), numbers.end());
  return CountFaultsOf(numbers, count) + (isInTurn ? "" : "out of turn");
}

[[nodiscard]] inline std::function<Outbox()> OutboxIn(const std::string& file,
                                                      Receivers receivers = {.broker = true}) {
  return [file, receivers] {
    return Outbox(std::make_unique<database::SqliteDatabase>(database::SqliteChoice{.file = file}),
                  receivers);
  };
}

class SenderBench {
 public:
  explicit SenderBench(int port) : choice_{.broker = {.host = "127.0.0.1"}, .names = kNames} {
    using namespace std::chrono_literals;
    choice_.broker.port = static_cast<std::uint16_t>(port);
    choice_.patience = {20ms, 200ms, 1000ms, 50ms, 1000ms};
    choice_.log = [this](const std::string& line) {
      const std::lock_guard lock(mutex_);
      log_.push_back(line);
    };
  }

  [[nodiscard]] SenderChoice& Choice() { return choice_; }
  void Start() {
    letters_ = std::make_shared<LetterQueue>(OutboxIn(File()), Receivers{.broker = true});
    sender_ = std::make_unique<MqttSender>(choice_, letters_);
  }
  void Stop() {
    sender_.reset();
    letters_.reset();
  }
  void Put(int number) {
    letters_->Put(LetterOf(number));
    sender_->Wake();
  }
  [[nodiscard]] MqttSender& Sender() { return *sender_; }
  [[nodiscard]] LetterQueue& Letters() { return *letters_; }
  [[nodiscard]] std::string File() const { return (folder_.path() / "outbox.db").string(); }
  [[nodiscard]] std::vector<std::string> LogLines() {
    const std::lock_guard lock(mutex_);
    return log_;
  }

 private:
  TemporaryFolder folder_;
  SenderChoice choice_;
  std::mutex mutex_;
  std::vector<std::string> log_;
  std::shared_ptr<LetterQueue> letters_;
  std::unique_ptr<MqttSender> sender_;
};

}  // namespace kestrel::publish
