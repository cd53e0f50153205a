// The command-line program as the process that monitors.
// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>

#include "ui/watch/monitor_process.h"

namespace kestrel {

// The command-line program beside this one, else one that the system finds; empty: there is none.
[[nodiscard]] QString CommandLineProgram();

class CliProcess : public MonitorProcess {
 public:
  explicit CliProcess(const QString& program);
  // Leaves what runs.
  ~CliProcess() override;

  void Begin(const QStringList& arguments, Hears hears) override;
  void AskToEnd() override;
  void Leave() override;

 private:
  void HearOutput();
  void HearComplaints();
  void Tell(MonitorEnd end);

  QString program_;
  QProcess* process_;  // null once it was left
  Hears hears_;
};

}  // namespace kestrel
