// The command about registers: list, read, write, dump.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/command.h"

namespace kestrel {

// "registers list|read|write|dump".
class RegistersCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  static ExitCode List(Session& session, const Output& output);
  ExitCode Read(Session& session, const Output& output) const;
  ExitCode Write(Session& session, const Output& output) const;
  ExitCode Dump(Session& session, const Output& output) const;

  CLI::App* word_ = nullptr;
  CLI::App* list_ = nullptr;
  CLI::App* read_ = nullptr;
  CLI::App* write_ = nullptr;
  CLI::App* dump_ = nullptr;
  std::string name_;
  std::string value_;
  std::string folder_;
};

}  // namespace kestrel
