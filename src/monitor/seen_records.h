// The records of a sensor's own series that were had, so that none is kept twice.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <string>

namespace kestrel::monitor {

inline constexpr int kMostInFlash = 16;  // records that the sensor's flash holds

// By name: the latest of the series, and those that the sensor's flash goes on holding, however
// long ago they came.
class SeenRecords {
 public:
  // False where it was seen before. A name holds no blanks.
  [[nodiscard]] bool Add(const std::string& name, bool isInFlash);

  // For the next start.
  [[nodiscard]] std::string Text() const;
  void Restore(const std::string& text);

 private:
  static constexpr std::size_t kMostRecent = 64;
  std::deque<std::string> recent_;
  std::deque<std::string> inFlash_;
};

}  // namespace kestrel::monitor
