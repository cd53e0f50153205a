// A message broker of the test's own, and those who listen to it.
// SPDX-License-Identifier: MIT
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <chrono>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace kestrel {

[[nodiscard]] inline sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

// A port that nobody listens at.
[[nodiscard]] inline int FreePort() {
  const int trial = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  if (bind(trial, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      getsockname(trial, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error("no free port");
  }
  close(trial);
  return ntohs(address.sin_port);
}

// A connection to a port of this machine; −1 where nobody listens.
[[nodiscard]] inline int ConnectedTo(int port) {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Loopback(port);
  if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return connection;
  }
  close(connection);
  return -1;
}

// Waits until something holds.
template <typename Condition>
[[nodiscard]] bool Eventually(Condition condition,
                              std::chrono::milliseconds patience = std::chrono::seconds(30)) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

// A real broker on this machine alone. What it knows survives a restart.
class TemporaryBroker {
 public:
  // `more` goes into its configuration; "FOLDER" there is its own folder.
  explicit TemporaryBroker(const std::string& more = "allow_anonymous true\n")
      : port_(FreePort()), more_(more) {
    Start();
  }
  TemporaryBroker(const std::string& more, int port) : port_(port), more_(more) { Start(); }

  void Start() {
    std::string text = "listener " + std::to_string(port_) +
                       " 127.0.0.1\nlog_dest stderr\nlog_type all\nuser root\npersistence true\n"
                       "persistence_location FOLDER/\nautosave_on_changes true\n"
                       "autosave_interval 1\nmax_queued_messages 100000\n" +
                       more_;
    for (std::size_t at = text.find("FOLDER"); at != std::string::npos; at = text.find("FOLDER")) {
      text.replace(at, 6, folder_.path().string());
    }
    const auto configuration = folder_.Write("configuration", text);
    const int before = TimesRunning();
    process_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"/usr/sbin/mosquitto", "-c", configuration.string()},
        folder_.path() / "log");
    if (!Eventually([&] { return TimesRunning() > before || !process_->IsRunning(); }) ||
        !process_->IsRunning()) {
      throw std::runtime_error("the broker does not start: " + folder_.Content("log"));
    }
  }
  void Stop(int signal = SIGTERM) { process_->End(signal); }
  void Freeze() const { process_->Signal(SIGSTOP); }
  void GoOn() const { process_->Signal(SIGCONT); }
  void Configure(const std::string& more) { more_ = more; }

  [[nodiscard]] int Port() const { return port_; }
  [[nodiscard]] const TemporaryFolder& Folder() const { return folder_; }
  [[nodiscard]] pid_t Process() const { return process_->Id(); }

 private:
  // It says so once it listens and ends in order when it is told to: told earlier, it would forget
  // what it knows.
  [[nodiscard]] int TimesRunning() const {
    const std::string log = folder_.Content("log");
    int times = 0;
    for (std::size_t at = log.find(" running"); at != std::string::npos;
         at = log.find(" running", at + 1)) {
      ++times;
    }
    return times;
  }

  TemporaryFolder folder_;
  int port_;
  std::string more_;
  std::unique_ptr<ChildProcess> process_;
};

// A subscriber of the broker's own tools; the broker keeps messages for it while one of them is
// away.
class Subscriber {
 public:
  explicit Subscriber(int port, const std::string& topic = "kestrel/#",
                      const std::vector<std::string>& more = {}) {
    std::vector<std::string> words{
        "stdbuf",
        "-oL",
        "mosquitto_sub",
        "-h",
        "127.0.0.1",
        "-p",
        std::to_string(port),
        "-q",
        "2",
        "-c",
        "-i",
        "subscriber-" + std::to_string(getpid()) + "-" + std::to_string(port),
        "-k",
        "5",
        "-F",
        "%t|%r|%m %p",
        "-t",
        topic,
        "-t",
        "ready"};
    words.insert(words.end(), more.begin(), more.end());
    process_ = std::make_unique<ChildProcess>(words, folder_.path() / "messages");
  }

  struct Message {
    std::string topic;
    bool isRetained = false;
    std::string payload;
  };
  // A broker that restarts may hand a message over again that it is not sure of: it has the same
  // number then, and counts once.
  [[nodiscard]] std::vector<Message> Messages() const {
    std::vector<Message> messages;
    std::set<std::string> numbered;
    std::istringstream text(folder_.Content("messages"));
    for (std::string line; std::getline(text, line);) {
      const std::size_t first = line.find('|');
      const std::size_t second = line.find('|', first + 1);
      const std::size_t third = line.find(' ', second + 1);
      if (second == std::string::npos || third == std::string::npos) continue;
      const bool isNumbered = line.compare(second + 1, third - second - 1, "0") != 0;
      if (isNumbered && !numbered.insert(line).second) continue;
      messages.push_back(
          {line.substr(0, first), line.substr(first + 1, 1) == "1", line.substr(third + 1)});
    }
    return messages;
  }
  // Of a topic.
  [[nodiscard]] std::vector<std::string> Payloads(const std::string& topic) const {
    std::vector<std::string> payloads;
    for (const Message& message : Messages()) {
      if (message.topic == topic) payloads.push_back(message.payload);
    }
    return payloads;
  }
  void Freeze() const { process_->Signal(SIGSTOP); }
  void GoOn() const { process_->Signal(SIGCONT); }

 private:
  TemporaryFolder folder_;
  std::unique_ptr<ChildProcess> process_;
};

// Publishes one message with the broker's own tool; whether that succeeded.
inline bool PublishTo(int port, const std::string& topic, const std::string& payload,
                      const std::vector<std::string>& more = {}) {
  const TemporaryFolder folder;
  const auto file = folder.Write("payload", payload);
  std::vector<std::string> words{
      "mosquitto_pub", "-h", "127.0.0.1",  "-p", std::to_string(port), "-q", "1", "-t",
      topic,           "-f", file.string()};
  words.insert(words.end(), more.begin(), more.end());
  ChildProcess process(words, folder.path() / "output");
  return Eventually([&] { return !process.IsRunning(); }) && folder.Content("output").empty();
}

// Whether the subscriber hears the broker at this port, so that it misses nothing from now on.
[[nodiscard]] inline bool Hears(const Subscriber& subscriber, int port) {
  return Eventually(
      [&] { return PublishTo(port, "ready", "1") && !subscriber.Payloads("ready").empty(); });
}

}  // namespace kestrel
