// What a user changes of the remarks of one or several records, and how it is taken back.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "archive/kept_record.h"

namespace kestrel::archive {

// What is not told stays as it is.
struct RemarksChange {
  std::optional<std::string> machine{};
  std::optional<std::string> point{};
  std::optional<std::string> orientation{};
  std::optional<std::optional<double>> rpm{};  // none within: to be none
  std::optional<std::string> note{};
  std::optional<std::vector<std::string>> tags{};

  [[nodiscard]] bool IsNone() const { return *this == RemarksChange{}; }
  [[nodiscard]] Remarks AppliedTo(Remarks remarks) const;
  // Brings what this changes back to what it was.
  [[nodiscard]] RemarksChange BackTo(const Remarks& before) const;
  bool operator==(const RemarksChange&) const = default;
};

}  // namespace kestrel::archive
