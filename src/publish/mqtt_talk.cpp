// One message of each kind on its way at a time, so that nothing grows while the broker is slow.
// SPDX-License-Identifier: MIT
#include "publish/mqtt_talk.h"

#include <algorithm>

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

std::chrono::milliseconds Until(steady_clock::time_point moment) {
  return std::max(1ms, std::chrono::ceil<std::chrono::milliseconds>(moment - steady_clock::now()));
}

}  // namespace

Latest::Latest(const Names& names) {
  Tell(Status{.of = names, .time = std::chrono::system_clock::now()});
}

void Latest::Tell(const Levels& levels) {
  const std::lock_guard lock(mutex_);
  levels_ = {JsonOf(levels), levels_.version + 1};
}

void Latest::Tell(const Status& status) {
  const std::lock_guard lock(mutex_);
  status_ = {JsonOf(status), status_.version + 1};
}

void Latest::Tell(const Spectrum& spectrum) {
  const std::lock_guard lock(mutex_);
  spectrum_ = spectrum;
}

Latest::Text Latest::OfLevels() const {
  const std::lock_guard lock(mutex_);
  return levels_;
}

Latest::Text Latest::OfStatus() const {
  const std::lock_guard lock(mutex_);
  return status_;
}

std::string Latest::OfSpectrum() const {
  const std::lock_guard lock(mutex_);
  return spectrum_ ? JsonOf(*spectrum_) : "";
}

MqttTalk::MqttTalk(const SessionChoice& session, const SenderPatience& patience, const Names& names,
                   const Latest& latest, LetterQueue& letters, std::uint64_t& levelsSent)
    : patience_(patience),
      names_(names),
      alarmTopic_(TopicOf(names, kAlarmLeaf)),
      requestTopic_(TopicOf(names, kSpectrumRequestLeaf)),
      latest_(latest),
      letters_(letters),
      levelsSent_(levelsSent),
      session_(session, Events()) {
  lastAnswer_ = steady_clock::now();
}

SessionEvents MqttTalk::Events() {
  const auto answered = [this] { lastAnswer_ = steady_clock::now(); };
  return {.connected =
              [this, answered](bool hasKept) {
                answered();
                isConnected_ = true;
                hasKept_ = hasKept;
              },
          .subscribed =
              [this, answered](int number) {
                answered();
                if (number == echoSubscription_) mayHaveEchoes_ = false;
              },
          .acknowledged =
              [this, answered](int number, const std::string& refusal) {
                answered();
                OnAcknowledged(number, refusal);
              },
          .received = [this](std::string_view topic, std::string_view payload,
                             bool isRetained) { OnReceived(topic, payload, isRetained); }};
}

void MqttTalk::Turn(const Event& wake, std::chrono::milliseconds longest) {
  if (isConnected_) SendDue();
  if (IsWaiting()) longest = std::min(longest, Until(lastAnswer_ + patience_.answer));
  if (isSpectrumWanted_) longest = std::min(longest, Until(nextSpectrum_));
  session_.Turn(wake, longest);
  if (IsWaiting() && steady_clock::now() - lastAnswer_ >= patience_.answer) {
    throw ConnectionLost(kNoAnswer, false);
  }
}

bool MqttTalk::IsWaiting() const {
  return !isConnected_ || mayHaveEchoes_ || levels_.number != 0 || status_.number != 0 ||
         spectrum_.number != 0 || letterNumber_ != 0;
}

bool MqttTalk::IsDone() {
  return IsConnected() && !IsWaiting() && statusSent_ == latest_.OfStatus().version &&
         levelsSent_ == latest_.OfLevels().version && !letters_.Next(Receiver::Broker);
}

void MqttTalk::SendDue() {
  if (!IsWaiting()) lastAnswer_ = steady_clock::now();
  if (!isSubscribed_) {
    isSubscribed_ = true;
    echoSubscription_ = session_.Subscribe(alarmTopic_);
    if (!hasKept_) session_.Subscribe(requestTopic_);
  }
  if (hasKept_) return;
  SendLatest(status_, statusSent_, latest_.OfStatus(), kStatusLeaf);
  SendLatest(levels_, levelsSent_, latest_.OfLevels(), kLevelsLeaf);
  if (!mayHaveEchoes_ && letterNumber_ == 0 && steady_clock::now() >= nextLetter_) SendLetter();
  if (isSpectrumWanted_ && spectrum_.number == 0 && steady_clock::now() >= nextSpectrum_) {
    SendSpectrum();
  }
}

void MqttTalk::SendLatest(OnItsWay& onItsWay, std::uint64_t sent, const Latest::Text& text,
                          const char* leaf) {
  if (onItsWay.number != 0 || sent == text.version) return;
  onItsWay = {session_.Publish(TopicOf(names_, leaf), text.payload, 1, true), text.version};
}

void MqttTalk::SendLetter() {
  letter_ = letters_.Next(Receiver::Broker);
  if (letter_) letterNumber_ = session_.Publish(letter_->topic, letter_->payload, 2, false);
}

void MqttTalk::SendSpectrum() {
  isSpectrumWanted_ = false;
  nextSpectrum_ = steady_clock::now() + patience_.betweenSpectra;
  const std::string spectrum = latest_.OfSpectrum();
  if (spectrum.empty()) return;
  spectrum_ = {session_.Publish(TopicOf(names_, kSpectrumLeaf), spectrum, 1, false), 0};
}

void MqttTalk::OnAcknowledged(int number, const std::string& refusal) {
  if (!refusal.empty()) {
    trouble_ = "The broker refuses messages (" + refusal +
               "): its rights have to let this user write and read below \"kestrel/\".";
  } else if (number == letterNumber_) {
    trouble_.clear();
  }
  if (number == letterNumber_ && !refusal.empty()) {
    letterNumber_ = 0;
    letter_.reset();
    nextLetter_ = steady_clock::now() + patience_.afterRefusal;
  } else if (number == letterNumber_) {
    OnLetterArrived();
  } else if (number == levels_.number) {
    levelsSent_ = levels_.version;
    levels_ = {};
  } else if (number == status_.number) {
    statusSent_ = status_.version;
    status_ = {};
  } else if (number == spectrum_.number) {
    spectrum_ = {};
  }
}

void MqttTalk::OnReceived(std::string_view topic, std::string_view payload, bool isRetained) {
  if (isRetained) return;
  if (topic == requestTopic_) {
    isSpectrumWanted_ = true;
  } else if (topic == alarmTopic_) {
    if (!letter_) letter_ = letters_.Next(Receiver::Broker);
    if (letter_ && letter_->payload == payload && letter_->topic == topic) {
      OnLetterArrived();
    } else if (letterNumber_ == 0) {
      letter_.reset();
    }
  }
}

void MqttTalk::OnLetterArrived() {
  if (letter_) letters_.Arrived(Receiver::Broker, *letter_);
  letter_.reset();
  letterNumber_ = 0;
}

}  // namespace kestrel::publish
