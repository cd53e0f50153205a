// The library's calls and callbacks, without a thread of the library's.
// SPDX-License-Identifier: MIT
#include "publish/mqtt_session.h"

#include <mqtt_protocol.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "publish/names.h"

namespace kestrel::publish {
namespace {

// Of messages from the broker; the only ones that matter here are small.
constexpr std::uint32_t kLargestPacket = 65536;
constexpr std::uint32_t kSessionSeconds = 30 * 24 * 3600;
// From here on a reason of MQTT 5 is a refusal.
constexpr int kFirstRefusal = 128;
constexpr int kOldUnknownProtocol = 1;
constexpr int kOldBadPassword = 4;
constexpr int kOldNotAuthorised = 5;

using Properties = std::unique_ptr<mosquitto_property, void (*)(mosquitto_property*)>;

Properties ConnectProperties(Kept kept) {
  mosquitto_property* properties = nullptr;
  mosquitto_property_add_int32(&properties, MQTT_PROP_SESSION_EXPIRY_INTERVAL,
                               kept == Kept::Forgotten ? 0 : kSessionSeconds);
  mosquitto_property_add_int32(&properties, MQTT_PROP_MAXIMUM_PACKET_SIZE, kLargestPacket);
  return {properties, [](mosquitto_property* list) { mosquitto_property_free_all(&list); }};
}

std::string WhereOf(const BrokerSettings& broker) {
  const bool isAddress6 = broker.host.find(':') != std::string::npos;
  const std::string host = CleanText(broker.host);
  return (isAddress6 ? "[" + host + "]" : host) + ":" + std::to_string(broker.port);
}

bool IsOfPassword(int reason) {
  return reason == kOldBadPassword || reason == kOldNotAuthorised ||
         reason == MQTT_RC_NOT_AUTHORIZED || reason == MQTT_RC_BAD_USERNAME_OR_PASSWORD;
}

}  // namespace

MqttSession::MqttSession(const SessionChoice& choice, SessionEvents events)
    : isOlderProtocol_(choice.isOlderProtocol),
      kept_(choice.kept),
      where_(WhereOf(choice.broker)),
      events_(std::move(events)),
      client_(mosquitto_new(choice.clientId.c_str(), choice.kept == Kept::Forgotten, this)) {
  if (!client_) throw ConnectionLost("There is no memory for a connection.", false);
  SetUp(choice);
  Connect(choice);
}

MqttSession::~MqttSession() = default;

void MqttSession::SetUp(const SessionChoice& choice) {
  mosquitto* client = client_.get();
  Check(mosquitto_int_option(client, MOSQ_OPT_PROTOCOL_VERSION,
                             isOlderProtocol_ ? MQTT_PROTOCOL_V311 : MQTT_PROTOCOL_V5));
  mosquitto_connect_v5_callback_set(client, OnConnect);
  mosquitto_disconnect_v5_callback_set(client, OnDisconnect);
  mosquitto_publish_v5_callback_set(client, OnPublish);
  mosquitto_subscribe_callback_set(client, OnSubscribe);
  mosquitto_message_callback_set(client, OnMessage);
  mosquitto_log_callback_set(client, OnLog);
  Check(mosquitto_will_set(client, choice.willTopic.c_str(), static_cast<int>(choice.will.size()),
                           choice.will.data(), 1, true));
  if (!choice.broker.user.empty()) {
    Check(mosquitto_username_pw_set(client, choice.broker.user.c_str(), choice.password.c_str()));
  }
  if (!choice.broker.tls) return;
  if (choice.broker.ca.empty()) {
    Check(mosquitto_int_option(client, MOSQ_OPT_TLS_USE_OS_CERTS, 1));
  } else if (access(choice.broker.ca.c_str(), R_OK) != 0 ||
             mosquitto_tls_set(client, choice.broker.ca.c_str(), nullptr, nullptr, nullptr,
                               nullptr) != MOSQ_ERR_SUCCESS) {
    throw ConnectionLost("The file of certificates " + choice.broker.ca +
                             " cannot be read: ca in the plan has to name one.",
                         false);
  }
}

void MqttSession::Connect(const SessionChoice& choice) {
  const Properties properties = ConnectProperties(kept_);
  errno = 0;
  Check(mosquitto_connect_bind_v5(client_.get(), choice.broker.host.c_str(), choice.broker.port,
                                  static_cast<int>(choice.keepAlive.count()), nullptr,
                                  isOlderProtocol_ ? nullptr : properties.get()));
  if (choice.broker.tls) return;
  wire_.emplace(mosquitto_socket(client_.get()), kLargestPacket, !isOlderProtocol_);
  if (wire_->Fault() != 0) Lose(MOSQ_ERR_CONN_LOST);
}

void MqttSession::Turn(const Event& wake, std::chrono::milliseconds longest) {
  mosquitto* client = client_.get();
  const int socket = mosquitto_socket(client);
  if (socket < 0) Lose(MOSQ_ERR_CONN_LOST);
  const short out = mosquitto_want_write(client) ? POLLOUT : 0;
  const pollfd none{-1, 0, 0};
  std::array<pollfd, 4> waits{{{socket, static_cast<short>(POLLIN | out), 0},
                               {wake.Number(), POLLIN, 0},
                               wire_ ? wire_->ForBroker() : none,
                               wire_ ? wire_->ForLibrary() : none}};
  poll(waits.data(), waits.size(), static_cast<int>(longest.count()));
  wake.Reset();
  if (wire_) Carry(*wire_);
  errno = 0;
  if ((waits[0].revents & (POLLIN | POLLERR | POLLHUP)) != 0) Check(mosquitto_loop_read(client, 1));
  if (out != 0) Check(mosquitto_loop_write(client, 1));
  Check(mosquitto_loop_misc(client));
  if (refused_ != 0) Lose(MOSQ_ERR_CONN_REFUSED);
}

void MqttSession::Carry(MqttWire& wire) const {
  switch (wire.Carry()) {
    case MqttWire::End::TooLarge:
      throw ConnectionLost("The broker " + where_ + " sends messages that are too large.", false);
    case MqttWire::End::Unknown:
      throw ConnectionLost("The broker " + where_ + " sends messages that cannot be read.", false);
    default:
      break;
  }
}

int MqttSession::Publish(const std::string& topic, std::string_view payload, int qos,
                         bool isRetained) {
  int number = 0;
  Check(mosquitto_publish(client_.get(), &number, topic.c_str(), static_cast<int>(payload.size()),
                          payload.data(), qos, isRetained));
  return number;
}

int MqttSession::Subscribe(const std::string& topic) {
  int number = 0;
  Check(mosquitto_subscribe(client_.get(), &number, topic.c_str(), 1));
  return number;
}

void MqttSession::Leave() {
  mosquitto_disconnect(client_.get());
  if (wire_) wire_->Carry();
}

void MqttSession::Check(int code) {
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  if (code != MOSQ_ERR_SUCCESS) Lose(code);
}

void MqttSession::Lose(int code) {
  const std::string reason = Reason(code);
  const bool isUnknownProtocol = refused_ == MQTT_RC_UNSUPPORTED_PROTOCOL_VERSION ||
                                 (isOlderProtocol_ && refused_ == kOldUnknownProtocol);
  if (isUnknownProtocol || refused_ == kOldUnknownProtocol) {
    throw ConnectionLost("The broker " + where_ + " speaks neither MQTT 5 nor 3.1.1.",
                         !isOlderProtocol_);
  }
  if (refused_ != 0) {
    throw ConnectionLost("The broker " + where_ + " refuses the connection (" + reason + ")" +
                             (IsOfPassword(refused_) ? ": check user and password." : "."),
                         false);
  }
  throw ConnectionLost("The broker " + where_ + " cannot be reached (" + reason + ")" +
                           (detail_.empty() ? "."
                                            : ": the plan's ca has to name the authority of its "
                                              "certificate, and broker the name in it."),
                       false);
}

std::string MqttSession::Reason(int code) const {
  if (refused_ != 0) {
    return refused_ < kFirstRefusal ? mosquitto_connack_string(refused_)
                                    : mosquitto_reason_string(refused_);
  }
  if (!detail_.empty()) return detail_;
  if (wire_ && wire_->Fault() != 0) return std::strerror(wire_->Fault());
  if (code == MOSQ_ERR_EAI) return "its name is not known";
  if (code == MOSQ_ERR_ERRNO && errno != 0) return std::strerror(errno);
  return CleanText(mosquitto_strerror(code));
}

void MqttSession::Guarded(const std::function<void()>& action) {
  try {
    action();
  } catch (...) {
    thrown_ = std::current_exception();
  }
}

void MqttSession::OnConnect(mosquitto* /*client*/, void* self, int reason, int flags,
                            const mosquitto_property* /*properties*/) {
  constexpr int kSessionPresent = 1;
  auto& session = *static_cast<MqttSession*>(self);
  session.refused_ = reason;
  if (reason != 0) return;
  const bool hasKept = session.kept_ == Kept::Heard && (flags & kSessionPresent) != 0;
  session.Guarded([&] { session.events_.connected(hasKept); });
}

// A broker that speaks MQTT 5 says why it goes.
void MqttSession::OnDisconnect(mosquitto* /*client*/, void* self, int reason,
                               const mosquitto_property* /*properties*/) {
  auto& session = *static_cast<MqttSession*>(self);
  if (reason >= kFirstRefusal && session.refused_ == 0) {
    session.detail_.clear();
    session.refused_ = reason;
  }
}

void MqttSession::OnPublish(mosquitto* /*client*/, void* self, int number, int reason,
                            const mosquitto_property* /*properties*/) {
  auto& session = *static_cast<MqttSession*>(self);
  session.Guarded([&] {
    session.events_.acknowledged(number,
                                 reason >= kFirstRefusal ? mosquitto_reason_string(reason) : "");
  });
}

void MqttSession::OnSubscribe(mosquitto* /*client*/, void* self, int number, int /*count*/,
                              const int* /*granted*/) {
  auto& session = *static_cast<MqttSession*>(self);
  session.Guarded([&] { session.events_.subscribed(number); });
}

void MqttSession::OnMessage(mosquitto* /*client*/, void* self, const mosquitto_message* message) {
  auto& session = *static_cast<MqttSession*>(self);
  const std::string_view payload(static_cast<const char*>(message->payload),
                                 static_cast<std::size_t>(message->payloadlen));
  session.Guarded([&] { session.events_.received(message->topic, payload, message->retain); });
}

// What the library knows of a failed handshake goes to its log alone.
void MqttSession::OnLog(mosquitto* /*client*/, void* self, int level, const char* text) {
  auto& session = *static_cast<MqttSession*>(self);
  if (level != MOSQ_LOG_ERR) return;
  const std::string line = CleanText(text);
  if (line.find("certificate") == std::string::npos && line.find("SSL") == std::string::npos) {
    return;
  }
  session.detail_ = line.substr(line.rfind(':') == std::string::npos ? 0 : line.rfind(':') + 1);
}

}  // namespace kestrel::publish
