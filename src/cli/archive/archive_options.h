// The options about records of the archive: which ones, and what only the user knows of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

#include "archive/filter.h"
#include "archive/kept_record.h"

namespace kestrel {

class FilterOptions {
 public:
  // Adds --from, --until, --machine, --point, --bench, --tag, --text, --kind, --option, --alarm and
  // --deleted; `this` outlives `app`.
  void AddTo(CLI::App& app);

  [[nodiscard]] archive::Filter Filter() const;

 private:
  std::string from_;
  std::string until_;
  std::string kind_;
  archive::Filter filter_;
};

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
