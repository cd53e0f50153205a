// One pair of sockets more; the library's descriptor becomes one end of it.
// SPDX-License-Identifier: MIT
#include "publish/mqtt_wire.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "publish/mqtt_packet.h"

namespace kestrel::publish {

MqttWire::MqttWire(int socket, std::size_t largest, bool hasProperties)
    : largest_(largest), hasProperties_(hasProperties) {
  std::array<int, 2> ends{-1, -1};
  broker_ = fcntl(socket, F_DUPFD_CLOEXEC, 0);
  isClosed_ = broker_ < 0 ||
              socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0;
  if (!isClosed_) {
    library_ = ends[1];
    isClosed_ = dup3(ends[0], socket, O_CLOEXEC) < 0;
    close(ends[0]);
  }
  if (isClosed_) fault_ = errno;
}

MqttWire::~MqttWire() {
  for (const int one : {broker_, library_}) {
    if (one >= 0) close(one);
  }
}

pollfd MqttWire::ForBroker() const {
  const int in = toLibrary_.empty() ? POLLIN : 0;
  const int out = toBroker_.empty() ? 0 : POLLOUT;
  return {broker_, static_cast<short>(in | out), 0};
}

pollfd MqttWire::ForLibrary() const {
  const int in = toBroker_.empty() ? POLLIN : 0;
  const int out = toLibrary_.empty() ? 0 : POLLOUT;
  return {library_, static_cast<short>(in | out), 0};
}

MqttWire::End MqttWire::Carry() {
  if (toBroker_.empty()) Take(library_, toBroker_);
  Give(broker_, toBroker_);
  if (toLibrary_.empty()) Take(broker_, heard_);
  const End end = Look();
  Give(library_, toLibrary_);
  if (end != End::None || !isClosed_) return end;
  if (toLibrary_.empty()) shutdown(library_, SHUT_RDWR);
  return End::Closed;
}

void MqttWire::Take(int from, std::string& bytes) {
  std::array<char, 16384> part{};
  const ssize_t count = recv(from, part.data(), part.size(), MSG_DONTWAIT);
  if (count > 0) bytes.append(part.data(), static_cast<std::size_t>(count));
  if (count < 0 && errno != EAGAIN) fault_ = errno;
  isClosed_ = isClosed_ || count == 0 || fault_ != 0;
}

void MqttWire::Give(int to, std::string& bytes) {
  if (bytes.empty()) return;
  const ssize_t count = send(to, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (count > 0) bytes.erase(0, static_cast<std::size_t>(count));
  if (count < 0 && errno != EAGAIN) {
    fault_ = errno;
    isClosed_ = true;
  }
}

MqttWire::End MqttWire::Look() {
  while (const auto size = SizeOfFirst(heard_)) {
    if (*size > largest_) return End::TooLarge;
    if (*size > heard_.size()) break;
    const std::string message = heard_.substr(0, *size);
    if (hasProperties_ && !HasKnownProperties(message)) return End::Unknown;
    toLibrary_ += message;
    heard_.erase(0, *size);
  }
  return End::None;
}

}  // namespace kestrel::publish
