// Alarms on their way, in a file: what was put in leaves it only when it has arrived.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "database/database.h"

namespace kestrel::publish {

enum class Receiver { Broker, Command };

struct Letter {
  std::int64_t number = 0;  // grows with every letter
  std::string id{};         // of the alarm
  std::string topic{};
  std::string payload{};
  bool operator==(const Letter&) const = default;
};

struct Receivers {
  bool broker = false;
  bool command = false;
};

// Ids of so many letters that have arrived are remembered, so that none is taken twice.
inline constexpr std::int64_t kRememberedLetters = 10'000;

// It belongs to one thread at a time. Every call throws DatabaseError; nothing is changed then.
class Outbox {
 public:
  // Makes its table where there is none. Letters for others than these receivers wait until they
  // are receivers again.
  Outbox(std::unique_ptr<database::Database> database, Receivers receivers);

  // On the disk when it returns, due to these. A letter whose id was put in before is left out.
  void Put(const Letter& letter, Receivers due);
  // The earliest after `after` that has not arrived; none where all have.
  [[nodiscard]] std::optional<Letter> Next(Receiver receiver, std::int64_t after = 0);
  void Arrived(Receiver receiver, std::int64_t number);
  void Arrived(Receiver receiver, const std::string& id);
  // Letters that have not arrived everywhere.
  [[nodiscard]] std::int64_t Waiting();

 private:
  std::unique_ptr<database::Database> database_;
  Receivers receivers_;
};

}  // namespace kestrel::publish
