// Asks a server of metrics, in the place of whoever reads them.
// SPDX-License-Identifier: MIT
#pragma once

#include <poll.h>

#include <array>
#include <chrono>
#include <string>

#include "network_faults.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {

// What comes to a request until the connection ends; nothing after `patience`.
[[nodiscard]] inline std::string AnswerTo(int port, const std::string& request,
                                          std::chrono::milliseconds patience) {
  const TestsOwn own;
  const int connection = ConnectedTo(port);
  if (connection < 0) return {};
  send(connection, request.data(), request.size(), MSG_NOSIGNAL);
  std::string answer;
  std::array<char, 4096> part{};
  const auto end = std::chrono::steady_clock::now() + patience;
  while (true) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd wait{connection, POLLIN, 0};
    if (left.count() <= 0 || poll(&wait, 1, static_cast<int>(left.count())) <= 0) break;
    const ssize_t count = recv(connection, part.data(), part.size(), 0);
    if (count <= 0) break;
    answer.append(part.data(), static_cast<std::size_t>(count));
  }
  close(connection);
  return answer;
}

inline const std::string kRequest = "GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n";

[[nodiscard]] inline int PortOf(const std::string& url) {
  return std::stoi(url.substr(url.rfind(':') + 1));
}

}  // namespace kestrel::publish
