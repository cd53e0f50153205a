// One connection to a broker, from its beginning to its loss, in one thread.
// SPDX-License-Identifier: MIT
#pragma once

#include <mosquitto.h>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "numeric/runtime_error.h"
#include "publish/event.h"
#include "publish/mqtt_wire.h"
#include "publish/settings.h"

namespace kestrel::publish {

// The text says what stands in the way, with the cure where there is one.
class ConnectionLost : public RuntimeError {
 public:
  ConnectionLost(const std::string& text, bool olderProtocol)
      : RuntimeError(text), needsOlderProtocol(olderProtocol) {}
  bool needsOlderProtocol;  // the broker knows MQTT 3.1.1 only
};

// What the broker keeps for a client while its connection is away.
enum class Kept {
  Heard,      // comes before anything else
  Forgotten,  // by the broker, with the numbers of messages that were on their way
  Nothing,    // it has just been forgotten
};

inline constexpr const char* kNoAnswer = "The broker does not answer.";

struct SessionChoice {
  BrokerSettings broker{};
  std::string password{};
  std::string clientId{};
  // What the broker says, retained, when the connection ends without a goodbye.
  std::string willTopic{};
  std::string will{};
  bool isOlderProtocol = false;  // MQTT 3.1.1 instead of 5
  Kept kept = Kept::Heard;
  std::chrono::seconds keepAlive{30};
};

// What the broker answers; called within Turn.
struct SessionEvents {
  std::function<void(bool hasKept)> connected;
  std::function<void(int number)> subscribed;
  // The refusal is empty where the broker has taken the message.
  std::function<void(int number, const std::string& refusal)> acknowledged;
  std::function<void(std::string_view topic, std::string_view payload, bool isRetained)> received;
};

// Numbers of messages begin anew with each connection; those of a session that goes on may still be
// in use at the broker.
class MqttSession {
 public:
  // Looks the name up and connects, which may take long. Throws ConnectionLost.
  MqttSession(const SessionChoice& choice, SessionEvents events);
  ~MqttSession();
  MqttSession(const MqttSession&) = delete;
  MqttSession& operator=(const MqttSession&) = delete;

  // Does what is to be done, and waits for it: until `wake` is set, `longest` at most. Throws
  // ConnectionLost, after which the session is of no use any more.
  void Turn(const Event& wake, std::chrono::milliseconds longest);
  // Numbers by which `acknowledged` and `subscribed` tell them. Throw ConnectionLost.
  int Publish(const std::string& topic, std::string_view payload, int qos, bool isRetained);
  int Subscribe(const std::string& topic);
  // Says goodbye: the broker will not tell that this is lost.
  void Leave();

 private:
  struct Free {
    void operator()(mosquitto* client) const { mosquitto_destroy(client); }
  };
  static void OnConnect(mosquitto* client, void* self, int reason, int flags,
                        const mosquitto_property* properties);
  static void OnDisconnect(mosquitto* client, void* self, int reason,
                           const mosquitto_property* properties);
  static void OnPublish(mosquitto* client, void* self, int number, int reason,
                        const mosquitto_property* properties);
  static void OnSubscribe(mosquitto* client, void* self, int number, int count, const int* granted);
  static void OnMessage(mosquitto* client, void* self, const mosquitto_message* message);
  static void OnLog(mosquitto* client, void* self, int level, const char* text);

  void SetUp(const SessionChoice& choice);
  void Connect(const SessionChoice& choice);
  void Carry(MqttWire& wire) const;
  void Check(int code);
  [[noreturn]] void Lose(int code);
  [[nodiscard]] std::string Reason(int code) const;
  // Nothing may be thrown through the library.
  void Guarded(const std::function<void()>& action);

  const bool isOlderProtocol_;
  const Kept kept_;
  const std::string where_;  // "broker.example:1883"
  SessionEvents events_;
  std::exception_ptr thrown_;
  int refused_ = 0;     // the broker's reason
  std::string detail_;  // of TLS
  std::unique_ptr<mosquitto, Free> client_;
  // The library takes whatever size a message announces, and ends the program over one that it does
  // not know: what whoever listens at the port says is looked at first. A broker with a trusted
  // certificate is trusted here too.
  std::optional<MqttWire> wire_;
};

// The library's own beginning and end: one of these lives as long as any session.
class MqttLibrary {
 public:
  MqttLibrary() { mosquitto_lib_init(); }
  ~MqttLibrary() { mosquitto_lib_cleanup(); }
  MqttLibrary(const MqttLibrary&) = delete;
  MqttLibrary& operator=(const MqttLibrary&) = delete;
};

}  // namespace kestrel::publish
