// The sender's thread: connect, talk, and connect again, for ever.
// SPDX-License-Identifier: MIT
#include "publish/mqtt_sender.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <optional>
#include <random>
#include <utility>

#include "numeric/hash.h"
#include "publish/event.h"
#include "publish/no_signals.h"

namespace kestrel::publish {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The keep-alive is looked at so often.
constexpr milliseconds kLongestTurn{5000};
constexpr milliseconds kFarewellTurn{50};
// For what is neither the farewell nor the look-up of a name.
constexpr milliseconds kEnding{1000};

// The same for the same bench and sensor, so that the broker knows the session again.
std::string ClientIdOf(const Names& names) {
  std::array<char, 32> id{};
  std::snprintf(id.data(), id.size(), "kestrel-%012llx",
                static_cast<unsigned long long>(HashOf(TopicOf(names, "")) >> 16U));
  return id.data();
}

SessionChoice SessionOf(const SenderChoice& choice) {
  return {.broker = choice.broker,
          .password = choice.password,
          .clientId = ClientIdOf(choice.names),
          .willTopic = TopicOf(choice.names, kStatusLeaf),
          .will = LostJson(choice.names)};
}

}  // namespace

class MqttSender::Worker {
 public:
  Worker(const SenderChoice& choice, std::shared_ptr<LetterQueue> letters)
      : choice_(choice),
        session_(SessionOf(choice)),
        letters_(std::move(letters)),
        latest(choice.names) {}

  void Run() {
    while (!isEnding_) {
      TalkOnce();
      WaitToRetry();
    }
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
    changed_.notify_all();
  }

  void Wake() const { wake_.Set(); }

  void End() {
    {
      const std::lock_guard lock(mutex_);
      isEnding_ = true;
    }
    changed_.notify_all();
    Wake();
  }

  // False when the thread is still at work; it tells nobody anything from then on.
  bool HasEndedInTime() {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, choice_.patience.farewell + kEnding, [&] { return hasEnded_; });
    isAbandoned_ = !hasEnded_;
    return hasEnded_;
  }

  [[nodiscard]] SenderState State() const {
    const std::lock_guard lock(mutex_);
    return state_;
  }

 private:
  // Until the connection is lost, or this ends.
  void TalkOnce() {
    const auto begin = steady_clock::now();
    try {
      if (HasHeardKept(Kept::Heard)) {
        Forget();
        HasHeardKept(Kept::Nothing);
      }
    } catch (const ConnectionLost& lost) {
      if (lost.needsOlderProtocol) session_.isOlderProtocol = true;
      Become({false, lost.what()});
    } catch (const std::exception& error) {
      Become({false, error.what()});
    }
    // One that lasted was good: the next try comes soon.
    if (steady_clock::now() - begin > 2 * choice_.patience.longestRetry) retry_ = {};
  }

  // Talks until this ends, or until all that the broker had kept is heard.
  bool HasHeardKept(Kept kept) {
    session_.kept = kept;
    MqttTalk talk(session_, choice_.patience, choice_.names, latest, *letters_, levelsSent_);
    while (!talk.HasHeardAll() && (!isEnding_ || MayStay(talk))) {
      talk.Turn(wake_, isEnding_ ? kFarewellTurn : kLongestTurn);
      Become({talk.IsConnected(), talk.Trouble()});
    }
    talk.Leave();
    if (!talk.HasHeardAll()) Become({});
    return talk.HasHeardAll();
  }

  // At the end, for what is on its way.
  bool MayStay(MqttTalk& talk) {
    if (!farewellEnd_) farewellEnd_ = steady_clock::now() + choice_.patience.farewell;
    return !talk.IsDone() && steady_clock::now() < *farewellEnd_;
  }

  void Forget() {
    bool isForgotten = false;
    session_.kept = Kept::Forgotten;
    MqttSession session(session_, {.connected = [&](bool) { isForgotten = true; },
                                   .subscribed = [](int) {},
                                   .acknowledged = [](int, const std::string&) {},
                                   .received = [](auto, auto, bool) {}});
    const auto end = steady_clock::now() + choice_.patience.answer;
    while (!isForgotten && steady_clock::now() < end) session.Turn(wake_, kFarewellTurn);
    if (!isForgotten) throw ConnectionLost(kNoAnswer, false);
    session.Leave();
  }

  // At different moments for those who lost the same broker.
  void WaitToRetry() {
    retry_ = std::clamp(2 * retry_, choice_.patience.firstRetry, choice_.patience.longestRetry);
    const milliseconds wait(
        std::uniform_int_distribution<std::int64_t>(retry_.count() / 2, retry_.count())(random_));
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, wait, [&] { return isEnding_.load(); });
  }

  // Changes are logged, once each.
  void Become(const SenderState& state) {
    const std::lock_guard lock(mutex_);
    const SenderState before = std::exchange(state_, state);
    if (isAbandoned_) return;
    if (!state.trouble.empty() && state.trouble != before.trouble) choice_.log(state.trouble);
    if (state.isConnected && !before.isConnected) {
      choice_.log("Connected to the broker " + CleanText(choice_.broker.host) + ".");
    }
  }

  const SenderChoice choice_;
  SessionChoice session_;
  const std::shared_ptr<LetterQueue> letters_;
  const MqttLibrary library_;

 public:
  Latest latest;

 private:
  const Event wake_;
  mutable std::mutex mutex_;  // of the state, hasEnded_, isAbandoned_
  std::condition_variable changed_;
  std::atomic<bool> isEnding_ = false;
  bool hasEnded_ = false;
  bool isAbandoned_ = false;
  SenderState state_;
  // Of the thread alone.
  std::uint64_t levelsSent_ = 0;
  milliseconds retry_{0};
  std::optional<steady_clock::time_point> farewellEnd_;
  std::minstd_rand random_{std::random_device{}()};
};

MqttSender::MqttSender(const SenderChoice& choice, std::shared_ptr<LetterQueue> letters)
    : worker_(std::make_shared<Worker>(choice, std::move(letters))),
      thread_(ThreadWithoutSignals([worker = worker_] { worker->Run(); })) {}

MqttSender::~MqttSender() {
  worker_->End();
  worker_->HasEndedInTime() ? thread_.join() : thread_.detach();
}

void MqttSender::Tell(const Levels& levels) {
  worker_->latest.Tell(levels);
  Wake();
}

void MqttSender::Tell(const Status& status) {
  worker_->latest.Tell(status);
  Wake();
}

void MqttSender::Tell(const Spectrum& spectrum) {
  worker_->latest.Tell(spectrum);
}

void MqttSender::Wake() {
  worker_->Wake();
}

SenderState MqttSender::State() const {
  return worker_->State();
}

}  // namespace kestrel::publish
