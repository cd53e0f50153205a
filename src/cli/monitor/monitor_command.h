// The command that captures by a plan for as long as it runs.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "cli/command.h"
#include "cli/monitor/monitor_run.h"
#include "monitor/plan/plan.h"

namespace kestrel {

// "monitor PLAN [--check] [--end-with-input]", and "monitor --from-sensor", which prints a plan.
class MonitorCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] std::optional<ExitCode> RunAlone(const Surroundings& surroundings,
                                                 const Connection& connection,
                                                 const KeepingChoice& archive,
                                                 const Output& output) override;
  // Of --from-sensor.
  ExitCode Run(Session& session, const Output& output) override;

 private:
  // What the file asks for; none after saying what is wrong with it.
  [[nodiscard]] std::optional<MonitorRun> Read(const Surroundings& surroundings,
                                               const Output& output) const;
  void SayMistakes(const Surroundings& surroundings, const Output& output,
                   const monitor::Mistakes& mistakes) const;

  CLI::App* word_ = nullptr;
  std::string file_;
  bool check_ = false;
  bool endsWithInput_ = false;
  bool fromSensor_ = false;
  std::string bench_;
  std::string sensor_;
  const Connection* connection_ = nullptr;  // as the command line names it
};

}  // namespace kestrel
