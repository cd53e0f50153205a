// The command about levels over time.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "archive/trend.h"
#include "cli/archive/archive_options.h"
#include "cli/command.h"

namespace kestrel {

// "trend rms|peak|temperature|supply", of the archive's records.
class TrendCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] bool NeedsSensor() const override { return false; }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  [[nodiscard]] archive::TrendChoice Choice() const;
  [[nodiscard]] archive::TrendChoice ChoiceNear(archive::TrendChoice choice) const;

  CLI::App* word_ = nullptr;
  std::optional<archive::TrendOf> of_;
  std::optional<Axis> axis_;
  double low_ = 0;
  double high_ = 0;
  std::optional<double> near_;
  std::optional<double> within_;
  FilterOptions filter_;
};

}  // namespace kestrel
