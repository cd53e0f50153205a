// The command about alarm bands: read, write, clear, load, save.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/command.h"

namespace kestrel {

// "bands read|write|clear|load|save".
class BandsCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  static ExitCode Read(Session& session, const Output& output);
  static ExitCode Report(Session& session, const Output& output, const Result<std::string>& end);
  ExitCode Load(Session& session, const Output& output) const;
  ExitCode Write(Session& session, const Output& output) const;
  ExitCode Save(Session& session, const Output& output) const;

  CLI::App* word_ = nullptr;
  CLI::App* read_ = nullptr;
  CLI::App* write_ = nullptr;
  CLI::App* clear_ = nullptr;
  CLI::App* load_ = nullptr;
  CLI::App* save_ = nullptr;
  std::string file_;
};

}  // namespace kestrel
