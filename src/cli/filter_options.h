// The options that choose records of the archive.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "archive/filter.h"

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

}  // namespace kestrel
