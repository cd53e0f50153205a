// The options that tell what only the user knows of a record.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

#include "archive/kept_record.h"

namespace kestrel {

class RemarkOptions {
 public:
  // Adds --machine, --point, --orientation, --rpm, --note and --tag; `this` outlives `app`.
  void AddTo(CLI::App& app);

  [[nodiscard]] bool Any() const;
  [[nodiscard]] archive::Remarks Remarks() const { return Over({}); }
  // Those that were given, over what a record has.
  [[nodiscard]] archive::Remarks Over(archive::Remarks remarks) const;

 private:
  std::optional<std::string> machine_;
  std::optional<std::string> point_;
  std::optional<std::string> orientation_;
  std::optional<double> rpm_;
  std::optional<std::string> note_;
  std::optional<std::vector<std::string>> tags_;
};

}  // namespace kestrel
