// The command about alarm thresholds from records that are known to be good or bad.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "baseline/workbench.h"
#include "cli/archive/baseline_options.h"
#include "cli/command.h"

namespace kestrel {

// "baseline".
class BaselineCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] bool NeedsSensor() const override { return ofSensor_ || write_; }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  // What stands in the way of the files that are asked for; empty where nothing does.
  [[nodiscard]] std::string Misuse() const;
  [[nodiscard]] Result<BandTable> Table(Session& session) const;
  [[nodiscard]] baseline::Workbench Bench(Session& session, baseline::Loaded loaded,
                                          const BandTable& table) const;
  void WriteFiles(Session& session, const baseline::Workbench& bench, const BandTable& result,
                  Json& done) const;
  static ExitCode WriteToSensor(Session& session, const baseline::Workbench& bench,
                                const BandTable& result, Json& done);

  CLI::App* word_ = nullptr;
  BaselineOptions options_;
  std::string bandsFile_;
  bool ofSensor_ = false;
  bool present_ = false;
  bool write_ = false;
  std::string saveFile_;
  std::string evidenceFile_;
};

}  // namespace kestrel
