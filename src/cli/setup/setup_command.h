// The commands about set-ups: the whole configuration of the sensor, kept, compared and restored.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "setup/sensor_setup.h"
#include "setup/setup_store.h"

namespace kestrel {

// "setup save|diff|restore|list|show|delete|export|import".
class SetupCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] bool NeedsSensor() const override;
  ExitCode Run(Session& session, const Output& output) override;

 private:
  // What a word below "setup" does.
  struct Deed {
    CLI::App* word;
    bool needsSensor;
    std::function<ExitCode(SetupCommand&, Session&, const Output&)> carryOut;
  };

  void Add(const char* name, const char* text, bool needsSensor,
           ExitCode (SetupCommand::*deed)(Session&, const Output&));
  [[nodiscard]] CLI::App& Word(const char* name) { return *word_->get_subcommand(name); }
  [[nodiscard]] const Deed& Wanted() const;

  ExitCode Save(Session& session, const Output& output);
  ExitCode Diff(Session& session, const Output& output);
  ExitCode Restore(Session& session, const Output& output);
  ExitCode List(Session& session, const Output& output);
  ExitCode Show(Session& session, const Output& output);
  ExitCode Delete(Session& session, const Output& output);
  ExitCode Export(Session& session, const Output& output);
  ExitCode Import(Session& session, const Output& output);

  // The set-up of the name or the file that was given; none after saying why.
  [[nodiscard]] std::optional<setup::Setup> Given(Session& session) const;
  // Whether it may be kept under this name; says why not.
  [[nodiscard]] bool MayKeep(Session& session, setup::SetupStore& store,
                             const std::string& name) const;

  CLI::App* word_ = nullptr;
  std::vector<Deed> deeds_;
  std::string name_;
  std::string file_;
  std::string newName_;
  bool replace_ = false;
  setup::RestoreChoice choice_;
};

}  // namespace kestrel
