// What is said over one connection: what is due, what is on its way, what has arrived.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "publish/letter_queue.h"
#include "publish/messages.h"
#include "publish/mqtt_session.h"

namespace kestrel::publish {

// How long what is waited for; shorter in tests.
struct SenderPatience {
  std::chrono::milliseconds firstRetry{1000};  // doubled from try to try
  std::chrono::milliseconds longestRetry{30'000};
  std::chrono::milliseconds answer{20'000};  // of the broker, then the connection is given up
  std::chrono::milliseconds betweenSpectra{1000};
  std::chrono::milliseconds farewell{3000};        // for what is on its way at the end
  std::chrono::milliseconds afterRefusal{30'000};  // of an alarm, then it is sent again
};

// The latest of what is told, for two threads.
class Latest {
 public:
  struct Text {
    std::string payload{};
    std::uint64_t version = 0;  // 0: nothing yet
  };
  explicit Latest(const Names& names);

  void Tell(const Levels& levels);
  void Tell(const Status& status);
  void Tell(const Spectrum& spectrum);
  [[nodiscard]] Text OfLevels() const;
  [[nodiscard]] Text OfStatus() const;
  [[nodiscard]] std::string OfSpectrum() const;  // empty: none

 private:
  mutable std::mutex mutex_;
  Text levels_;
  Text status_;
  std::optional<Spectrum> spectrum_;
};

// From the connection's beginning to its loss. It belongs to one thread.
class MqttTalk {
 public:
  // `levelsSent` is the version of the levels that the broker has, over all connections.
  MqttTalk(const SessionChoice& session, const SenderPatience& patience, const Names& names,
           const Latest& latest, LetterQueue& letters, std::uint64_t& levelsSent);

  // Sends what is due, and waits for what comes. Throws ConnectionLost.
  void Turn(const Event& wake, std::chrono::milliseconds longest);
  void Leave() { session_.Leave(); }

  // Ready to send.
  [[nodiscard]] bool IsConnected() const { return isConnected_ && !hasKept_; }
  // The broker had kept the session, and nothing more of it comes. Nothing is sent over such a
  // connection: numbers of before may be in use, and the broker would take a new message for an old
  // one.
  [[nodiscard]] bool HasHeardAll() const { return hasKept_ && !mayHaveEchoes_; }
  // Whether everything has arrived.
  [[nodiscard]] bool IsDone();
  // What the broker does not take; empty when all is well.
  [[nodiscard]] const std::string& Trouble() const { return trouble_; }

 private:
  using Instant = std::chrono::steady_clock::time_point;
  // A message that waits for its acknowledgement; 0: none does.
  struct OnItsWay {
    int number = 0;
    std::uint64_t version = 0;
  };

  [[nodiscard]] SessionEvents Events();
  void SendDue();
  void SendLatest(OnItsWay& onItsWay, std::uint64_t sent, const Latest::Text& text,
                  const char* leaf);
  void SendLetter();
  void SendSpectrum();
  void OnAcknowledged(int number, const std::string& refusal);
  void OnReceived(std::string_view topic, std::string_view payload, bool isRetained);
  void OnLetterArrived();
  [[nodiscard]] bool IsWaiting() const;

  const SenderPatience patience_;
  const Names names_;
  const std::string alarmTopic_;
  const std::string requestTopic_;
  const Latest& latest_;
  LetterQueue& letters_;
  std::uint64_t& levelsSent_;
  std::uint64_t statusSent_ = 0;
  bool isConnected_ = false;
  bool hasKept_ = false;
  bool isSubscribed_ = false;
  int echoSubscription_ = 0;
  bool mayHaveEchoes_ = true;  // until the broker has answered the subscription
  OnItsWay levels_;
  OnItsWay status_;
  OnItsWay spectrum_;
  bool isSpectrumWanted_ = false;
  Instant nextSpectrum_{};
  std::optional<Letter> letter_;  // on its way
  int letterNumber_ = 0;
  Instant nextLetter_{};
  std::string trouble_;
  Instant lastAnswer_ = std::chrono::steady_clock::now();
  MqttSession session_;  // begins last
};

}  // namespace kestrel::publish
