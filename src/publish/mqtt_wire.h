// Stands between a broker and the library, which ends the program over messages that nobody knows.
// SPDX-License-Identifier: MIT
#pragma once

#include <poll.h>

#include <cstddef>
#include <string>

namespace kestrel::publish {

// Takes a connection out of the library's hands: what the library says is passed on as it is, what
// the broker says message by message, when it has come whole and is one that can be read. It
// belongs to one thread and never waits.
class MqttWire {
 public:
  enum class End {
    None,
    Closed,    // by either side, or broken; the library reads what came before, and then the end
    TooLarge,  // a message, or rather its beginning
    Unknown    // a message that cannot be read
  };

  // From now on `socket` leads to this. `hasProperties` with MQTT 5.
  MqttWire(int socket, std::size_t largest, bool hasProperties);
  ~MqttWire();
  MqttWire(const MqttWire&) = delete;
  MqttWire& operator=(const MqttWire&) = delete;

  // When there is something to carry.
  [[nodiscard]] pollfd ForBroker() const;
  [[nodiscard]] pollfd ForLibrary() const;
  // Carries what there is, both ways. After an end nothing more comes.
  End Carry();
  [[nodiscard]] int Fault() const { return fault_; }  // errno of what broke; 0: none

 private:
  void Take(int from, std::string& bytes);
  // As many as go; they leave the front.
  void Give(int to, std::string& bytes);
  End Look();

  const std::size_t largest_;
  const bool hasProperties_;
  int broker_ = -1;
  int library_ = -1;
  std::string heard_;  // of the broker, not yet whole
  std::string toLibrary_;
  std::string toBroker_;
  bool isClosed_ = false;
  int fault_ = 0;
};

}  // namespace kestrel::publish
