// The commands that report records: captured now, or stored earlier.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "alarms/band_table.h"
#include "cli/archive/archive_options.h"
#include "cli/command.h"
#include "cli/number_choice.h"

namespace kestrel {

// "capture": records with the settings given, the others as the sensor has them.
class CaptureCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  bool PrepareFiles(Session& session) const;
  ExitCode Capture(Session& session, const Output& output, int number);

  CLI::App* word_ = nullptr;
  RecordSetup setup_;
  int count_ = 1;
  double interval_ = 0;  // seconds from start to start
  std::string folder_;
  std::string name_;
  bool withData_ = false;
  bool oldData_ = false;
  bool fast_ = false;
  NumberChoice numbers_;
  RemarkOptions remarks_;
  std::optional<BandTable> bands_;  // of the sensor, where levels are asked for
};

// "record": a stored record from the sensor's flash.
class RecordCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  CLI::App* word_ = nullptr;
  int record_ = 0;
  bool time_ = false;
  bool fast_ = false;
  bool withData_ = false;
  NumberChoice numbers_;
  RemarkOptions remarks_;
};

}  // namespace kestrel
