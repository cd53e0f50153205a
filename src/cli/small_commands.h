// The commands of one step each: a function of the sensor, its state, the adapters.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/command.h"

namespace kestrel {

// "command": one of the sensor's sixteen functions.
class GlobalCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  CLI::App* word_ = nullptr;
  int bit_ = 0;
};

// "status": the flags, the alarms and the conditions.
class StatusCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  CLI::App* word_ = nullptr;
  bool clear_ = false;
};

// "adapters": the boards that are attached.
class AdaptersCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] bool NeedsSensor() const override { return false; }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  CLI::App* word_ = nullptr;
};

}  // namespace kestrel
