// A listener in the place of a broker, which answers as a test wants.
// SPDX-License-Identifier: MIT
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

#include "network_faults.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {

// Answers every connection by a function, in a thread of its own.
class RogueBroker {
 public:
  explicit RogueBroker(std::function<void(int connection)> answer, int port = FreePort())
      : port_(port), answer_(std::move(answer)) {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    const sockaddr_in address = Loopback(port_);
    if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener_, 5) != 0) {
      throw std::runtime_error("no listener");
    }
    thread_ = std::thread([this] {
      const TestsOwn own;
      for (int one = accept(listener_, nullptr, nullptr); one >= 0;
           one = accept(listener_, nullptr, nullptr)) {
        ++connections;
        answer_(one);
        close(one);
      }
    });
  }
  ~RogueBroker() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
  }
  RogueBroker(const RogueBroker&) = delete;
  RogueBroker& operator=(const RogueBroker&) = delete;

  [[nodiscard]] int Port() const { return port_; }
  std::atomic<int> connections = 0;

 private:
  const int port_;
  int listener_ = -1;
  std::function<void(int)> answer_;
  std::thread thread_;
};

inline bool Send(int connection, const std::string& bytes) {
  return send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(bytes.size());
}

}  // namespace kestrel::publish
