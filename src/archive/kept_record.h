// A record as the archive keeps it, with what the user added.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "record/record.h"

namespace kestrel::archive {

// What only the user knows of a record. All texts are UTF-8.
struct Remarks {
  std::string machine{};
  std::string point{};        // where on the machine the sensor sits
  std::string orientation{};  // of the axes: "X radial, Z axial"
  std::optional<double> rpm{};
  std::string note{};
  std::vector<std::string> tags{};  // sorted, each once, none with a line's end
  bool operator==(const Remarks&) const = default;
};

// Sorted, each once, blanks around them and empty ones dropped, lines' ends made blanks.
[[nodiscard]] std::vector<std::string> CleanTags(std::vector<std::string> tags);

// Names a record everywhere and for ever: the same record kept twice is one.
using Uid = std::array<std::uint8_t, 16>;
[[nodiscard]] Uid NewUid();
// 32 digits to the base of 16, and back; nothing where a text is none.
[[nodiscard]] std::string TextOf(const Uid& uid);
[[nodiscard]] std::optional<Uid> UidFrom(const std::string& text);

// Over the bins that hold vibration, or of a time record without its mean.
struct AxisLevels {
  double rmsG = 0;
  double peakG = 0;
  bool operator==(const AxisLevels&) const = default;
};
// None where the record cannot carry a level.
using KeptLevels = std::array<std::optional<AxisLevels>, 3>;
[[nodiscard]] KeptLevels LevelsFor(const Record& record);

// Where a record belongs among records that were taken together: one capture an option of a machine
// that was to run steadily.
struct WideMark {
  Uid set{};                 // names the set everywhere
  unsigned wanted = 0b1111;  // the rate options that the set was to hold, a bit each
  bool operator==(const WideMark&) const = default;
};

// A record to be kept.
struct NewRecord {
  Uid uid{};
  Record record{};
  Remarks remarks{};
  std::string program{};           // the version that read it
  std::string bench{};             // the computer it stood at
  std::optional<WideMark> wide{};  // none: it was taken for itself
  bool operator==(const NewRecord&) const = default;
};

// A record as the archive has it. In a list its points are not read: all are 0.
struct KeptRecord : NewRecord {
  std::int64_t id = 0;  // within its archive
  KeptLevels levels;
  // Deleted, but not yet for good.
  std::optional<std::chrono::system_clock::time_point> deleted;
  bool operator==(const KeptRecord&) const = default;
};

}  // namespace kestrel::archive
