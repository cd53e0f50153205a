// All ways out together: what is told goes to each that the settings ask for.
// SPDX-License-Identifier: MIT
#include "publish/publisher.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "database/sqlite_database.h"
#include "numeric/runtime_error.h"
#include "publish/alarm_command.h"
#include "publish/metrics.h"
#include "publish/mqtt_sender.h"

namespace kestrel::publish {
namespace {

// Only this program uses the file.
constexpr std::chrono::milliseconds kPatience{500};

std::optional<std::string> Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

Receivers ReceiversOf(const Settings& settings) {
  return {settings.broker.has_value(), settings.command.has_value()};
}

std::shared_ptr<LetterQueue> QueueFor(const PublisherChoice& choice) {
  const Receivers receivers = ReceiversOf(choice.settings);
  const bool isNeeded = receivers.broker || receivers.command;
  const auto open = [file = isNeeded ? choice.outbox : ":memory:", receivers] {
    try {
      return Outbox(std::make_unique<database::SqliteDatabase>(
                        database::SqliteChoice{.file = file, .patience = kPatience}),
                    receivers);
    } catch (const database::DatabaseError& error) {
      throw database::DatabaseError(error.fault, "alarms that wait cannot be kept in " + file +
                                                     " (" + error.what() +
                                                     "): see that the folder is there, may be "
                                                     "written and has space");
    }
  };
  return std::make_shared<LetterQueue>(open, receivers);
}

class Publishing : public Publisher {
 public:
  explicit Publishing(const PublisherChoice& choice) : choice_(choice), letters_(QueueFor(choice)) {
    const Settings& settings = choice.settings;
    if (settings.broker) {
      sender_.emplace(SenderChoice{.broker = *settings.broker,
                                   .password = PasswordFor(*settings.broker, Variable),
                                   .names = choice.names,
                                   .log = choice.log},
                      letters_);
    }
    if (settings.command) command_.emplace(*settings.command, letters_, choice.log);
    if (settings.metrics) {
      metrics_.emplace(*settings.metrics, choice.names, choice.version,
                       [this] { return StateOfOthers(); });
    }
  }

  void Tell(const Levels& levels) override {
    if (sender_) sender_->Tell(levels);
    if (metrics_) metrics_->Tell(levels);
  }
  void Tell(const Status& status) override {
    if (sender_) sender_->Tell(status);
    if (metrics_) metrics_->Tell(status);
  }
  void Tell(const Spectrum& spectrum) override {
    if (sender_) sender_->Tell(spectrum);
  }
  bool Tell(const Alarm& alarm) override {
    if (metrics_) metrics_->Tell(alarm);
    if (!sender_ && !command_) return true;
    const bool isSafe = letters_->Put(
        {.id = alarm.id, .topic = TopicOf(choice_.names, kAlarmLeaf), .payload = JsonOf(alarm)});
    if (sender_) sender_->Wake();
    if (command_) command_->Wake();
    return isSafe;
  }

  PublisherState State() override {
    PublisherState state = StateOfOthers();
    if (metrics_) state.metricsUrl = metrics_->Url();
    return state;
  }

 private:
  // Asked by the page's own threads too, while `metrics_` begins and ends.
  PublisherState StateOfOthers() {
    const QueueState queue = letters_->State();
    PublisherState state{.hasBroker = sender_.has_value(),
                         .waitingAlarms = queue.waiting,
                         .unsafeAlarms = queue.unsafe,
                         .trouble = queue.trouble};
    if (sender_) {
      const SenderState sender = sender_->State();
      state.isConnected = sender.isConnected;
      if (state.trouble.empty()) state.trouble = sender.trouble;
    }
    if (command_ && state.trouble.empty()) state.trouble = command_->Trouble();
    return state;
  }

  const PublisherChoice choice_;
  const std::shared_ptr<LetterQueue> letters_;
  std::optional<MqttSender> sender_;
  std::optional<AlarmCommand> command_;
  std::optional<Metrics> metrics_;  // goes first: it asks for the state of the others
};

}  // namespace

std::unique_ptr<Publisher> MakePublisher(const PublisherChoice& choice) {
  return std::make_unique<Publishing>(choice);
}

}  // namespace kestrel::publish
