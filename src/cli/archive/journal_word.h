// The word about the journal: what stood in the way of captures, and alarms.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <string>

#include "archive/journal.h"
#include "cli/command.h"

namespace kestrel {

class JournalWord {
 public:
  // Adds its options; `this` outlives `app`.
  void AddTo(CLI::App& app);
  ExitCode Run(archive::Archive archive, const Output& output) const;

 private:
  std::string from_;
  std::string until_;
  archive::JournalFilter filter_;
  std::int64_t most_ = 0;  // 0: all
};

}  // namespace kestrel
