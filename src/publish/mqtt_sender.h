// Sends to a broker in the background: alarms all and once, of everything else the latest.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <thread>

#include "publish/letter_queue.h"
#include "publish/messages.h"
#include "publish/mqtt_talk.h"
#include "publish/publisher.h"

namespace kestrel::publish {

struct SenderChoice {
  BrokerSettings broker{};
  std::string password{};
  Names names{};
  SenderPatience patience{};
  Log log = [](const std::string&) {};
};

struct SenderState {
  bool isConnected = false;
  std::string trouble{};
};

// Has a thread of its own, which alone speaks with the broker.
//
// An alarm is published with QoS 2, one at a time. The broker sends it back, too, and keeps this
// echo for the session while the connection is away: after a connection was lost, whatever ended
// it, the echo comes before anything else, and an alarm that had arrived is not sent again.
// Then the broker is told to forget the session, and a new one begins.
class MqttSender {
 public:
  MqttSender(const SenderChoice& choice, std::shared_ptr<LetterQueue> letters);
  // Tells the broker what is on its way, and says goodbye; a broker that does not answer is left.
  ~MqttSender();
  MqttSender(const MqttSender&) = delete;
  MqttSender& operator=(const MqttSender&) = delete;

  void Tell(const Levels& levels);
  void Tell(const Status& status);
  void Tell(const Spectrum& spectrum);
  // There is a new letter.
  void Wake();
  [[nodiscard]] SenderState State() const;

 private:
  class Worker;
  std::shared_ptr<Worker> worker_;  // may outlive this while a name is looked up
  std::thread thread_;              // begins last
};

}  // namespace kestrel::publish
