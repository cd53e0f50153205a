// The way out of a monitor: whatever it tells reaches those who listen, and never holds it up.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "publish/messages.h"
#include "publish/settings.h"

namespace kestrel::publish {

struct PublisherState {
  bool hasBroker = false;          // whether one is asked for
  bool isConnected = false;        // to it
  std::int64_t waitingAlarms = 0;  // not yet acknowledged, or not yet told to the command
  std::int64_t unsafeAlarms = 0;   // of these in memory only, since the disk does not take them
  std::string trouble{};           // with the cure; empty when all is well
  std::string metricsUrl{};        // empty: none
  bool operator==(const PublisherState&) const = default;
};

// Every call returns at once, whatever the broker does; from any thread.
class Publisher {
 public:
  virtual ~Publisher() = default;

  // Only the latest of each is sent.
  virtual void Tell(const Levels& levels) = 0;
  virtual void Tell(const Status& status) = 0;
  // Kept until somebody asks for it.
  virtual void Tell(const Spectrum& spectrum) = 0;
  // Every alarm reaches the broker and the command, in turn. True: it is on the disk and survives
  // the process; one that was told before (the same id) is not told again. False: it is in memory
  // until the disk takes it.
  virtual bool Tell(const Alarm& alarm) = 0;

  [[nodiscard]] virtual PublisherState State() = 0;
};

// What is told of the publishing itself, a line each; from any thread.
using Log = std::function<void(const std::string& line)>;

struct PublisherChoice {
  Settings settings{};
  Names names{};
  std::string outbox{};   // file of alarms that wait; needed with a broker or a command
  std::string version{};  // of the program
  Log log = [](const std::string&) {};
};

// Throws RuntimeError with the cure where the settings cannot be followed: a port that is taken, a
// password that cannot be read. A broker that is away is no fault.
[[nodiscard]] std::unique_ptr<Publisher> MakePublisher(const PublisherChoice& choice);

}  // namespace kestrel::publish
