// The options about records of the archive: which ones, and what only the user knows of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

#include "archive/filter.h"
#include "archive/remarks_change.h"

namespace kestrel {

// Why a text is no time in UTC; empty where it is one.
[[nodiscard]] std::string TimeProblem(const std::string& text);

// Why a text is no number of a record; empty where it is one.
[[nodiscard]] std::string RecordNumberProblem(const std::string& text);

// Why a text names no wide spectrum; empty where it could: 32 hexadecimal digits, or `other`.
[[nodiscard]] std::string WideProblem(const std::string& text, const std::string& other);

class FilterOptions {
 public:
  // Adds --from, --until, --machine, --point, --bench, --tag, --text, --kind, --option, --wide,
  // --alarm and --deleted; `this` outlives `app`.
  void AddTo(CLI::App& app);

  [[nodiscard]] archive::Filter Filter() const;

 private:
  std::string from_;
  std::string until_;
  std::string kind_;
  std::string wide_;
  bool alarm_ = false;  // a flag that is not given asks for nothing, not for records without
  archive::Filter filter_;
};

class RemarkOptions {
 public:
  // Adds --machine, --point, --orientation, --rpm, --note and --tag; `this` outlives `app`.
  void AddTo(CLI::App& app);

  // Those that were given.
  [[nodiscard]] archive::RemarksChange Change() const;
  [[nodiscard]] archive::Remarks Remarks() const { return Change().AppliedTo({}); }

 private:
  archive::RemarksChange told_;
  std::optional<double> rpm_;
};

}  // namespace kestrel
