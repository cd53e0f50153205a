// One spectrum over all rate options: captured in one go, or out of the archive.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/archive/archive_options.h"
#include "cli/command.h"
#include "cli/wide/wide_report.h"
#include "station/wide_capture.h"

namespace kestrel {

// "wide": captures at every sample-rate option, joined; with --from, those of a kept one.
class WideCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] bool NeedsSensor() const override { return from_.empty() && !list_; }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  ExitCode Capture(Session& session, const Output& output);
  [[nodiscard]] ExitCode End(Session& session, const WideCaptured& captured) const;
  ExitCode Reread(Session& session, const Output& output);
  ExitCode List(const Session& session, const Output& output);
  void Write(Session& session, const Output& output, WideReport report) const;
  void ShowProgress(Session& session, const WideProgress& now) const;

  CLI::App* word_ = nullptr;
  RecordSetup setup_;
  std::vector<int> options_;
  std::optional<analysis::QuantityChoice> quantity_;
  double limitDb_ = analysis::kSteadyLimitDb;
  int lines_ = 10;
  bool fast_ = false;
  bool withData_ = false;
  std::string csv_;   // file
  std::string from_;  // uid of a kept one, or "last"
  bool list_ = false;
  RemarkOptions remarks_;
};

}  // namespace kestrel
