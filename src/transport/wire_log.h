// What went over the wire to the adapter board, line by line.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace kestrel {

// One exchange with the adapter board.
struct WireEntry {
  std::chrono::nanoseconds at{0};
  int command = 0;                      // first byte of the block
  std::vector<std::uint16_t> sent;      // frames, or the value of a setting
  std::vector<std::uint16_t> received;  // frames, or the bytes of an answer
  bool failed = false;
};

// What went over the wire, the newest entries kept in bounded memory.
class WireLog {
 public:
  static constexpr std::size_t kMostEntries = 10000;

  void Add(WireEntry entry);
  void Clear();

  [[nodiscard]] const std::deque<WireEntry>& Entries() const { return entries_; }
  // How many older entries made room for newer ones.
  [[nodiscard]] std::int64_t Dropped() const { return dropped_; }

  // One line an entry, tabs between the columns: number, seconds since the first entry that is
  // kept, command, words sent, words received or "failed".
  [[nodiscard]] std::string Text() const;

 private:
  std::deque<WireEntry> entries_;
  std::int64_t dropped_ = 0;
};

}  // namespace kestrel
