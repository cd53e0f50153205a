// What a monitor must know again at its next start, in a file of its own on this machine.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "archive/journal.h"
#include "database/database.h"

namespace kestrel::monitor {

// Entries of the journal that the archive does not have yet or that still last, and named texts.
// One writes. Every call throws DatabaseError.
class LocalStore {
 public:
  // Makes the tables where they are missing.
  explicit LocalStore(std::unique_ptr<database::Database> database);

  using Texts = std::map<std::string, std::string>;

  // All or none, on the disk when this returns.
  void Save(const std::vector<archive::JournalEntry>& entries, const Texts& texts);

  [[nodiscard]] Texts AllTexts();
  // Those that last.
  [[nodiscard]] std::vector<archive::JournalEntry> Open();

  struct Waiting {
    archive::JournalEntry entry{};
    std::int64_t revision = 0;  // grows with every change of it
  };
  // Those that the archive does not have as they are now, in the order of their changes.
  [[nodiscard]] std::vector<Waiting> NotBrought(std::int64_t most);
  // The archive has them. Those that are over are forgotten.
  void Brought(const std::vector<Waiting>& entries);

 private:
  std::vector<Waiting> Entries(const std::string& rest);

  std::unique_ptr<database::Database> database_;
};

}  // namespace kestrel::monitor
