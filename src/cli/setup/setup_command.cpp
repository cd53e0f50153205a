// Set-ups saved, compared, restored, and handed on as files.
// SPDX-License-Identifier: MIT
#include "cli/setup/setup_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <filesystem>

#include "cli/setup/setup_report.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

setup::SetupStore StoreOf(Session& session) {
  return {session.station.FilesHere(), session.SetupFolder()};
}

ExitCode Written(const Output& output, const std::string& name, const fs::path& file) {
  if (output.json) {
    output.Write({{"name", name}, {"file", TextOf(file)}});
  } else {
    output.out << TextOf(file) << '\n';
  }
  return ExitCode::Success;
}

ExitCode EndOf(const setup::RestoreReport& report) {
  using Why = setup::Stopped::Why;
  if (report.stopped && report.stopped->why == Why::Lost) return ExitCode::NoSensor;
  if (report.stopped && report.stopped->why == Why::Cancelled) return ExitCode::Interrupted;
  return report.IsWhole() ? ExitCode::Success : ExitCode::Failure;
}

}  // namespace

void SetupCommand::Add(const char* name, const char* text, bool needsSensor,
                       ExitCode (SetupCommand::*deed)(Session&, const Output&)) {
  deeds_.push_back({word_->add_subcommand(name, text), needsSensor,
                    [deed](SetupCommand& self, Session& session, const Output& output) {
                      return (self.*deed)(session, output);
                    }});
}

void SetupCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("setup", "The sensor's whole configuration, saved under a name");
  word_->require_subcommand(1);
  Add("save", "Save registers and alarm bands of the sensor", true, &SetupCommand::Save);
  Add("diff", "Report where the sensor differs from a set-up; exit code 5 if it does", true,
      &SetupCommand::Diff);
  Add("restore", "Write what differs into the sensor and read it back", true,
      &SetupCommand::Restore);
  Add("list", "List the set-ups", false, &SetupCommand::List);
  Add("show", "Report what a set-up holds", false, &SetupCommand::Show);
  Add("delete", "Delete a set-up", false, &SetupCommand::Delete);
  Add("export", "Write a set-up to a file", false, &SetupCommand::Export);
  Add("import", "Import the set-up of a file", false, &SetupCommand::Import);
  for (const char* word : {"save", "diff", "restore", "show"}) {
    Word(word).add_option("name", name_, "Name of the set-up");
    Word(word)
        .add_option("--file", file_, "Use the set-up in this file instead")
        ->type_name("FILE");
  }
  Word("delete").add_option("name", name_, "Name of the set-up")->required();
  Word("export").add_option("name", name_, "Name of the set-up")->required();
  for (const char* word : {"export", "import"}) {
    Word(word).add_option("file", file_, "The file")->required();
  }
  Word("import").add_option("--name", newName_, "Keep it under this name");
  for (const char* word : {"save", "export", "import"}) {
    Word(word).add_flag("--replace", replace_, "Replace what is there already");
  }
  Word("restore").add_flag("--flash", choice_.saveInFlash,
                           "Save the registers in the sensor's flash as well");
  Word("restore").add_flag("--keep-nulls", choice_.keepNulls,
                           "Leave the offset corrections X_NULL, Y_NULL and Z_NULL as they are");
}

const SetupCommand::Deed& SetupCommand::Wanted() const {
  return *std::ranges::find_if(deeds_, [](const Deed& deed) { return deed.word->parsed(); });
}

bool SetupCommand::NeedsSensor() const {
  return Wanted().needsSensor;
}

ExitCode SetupCommand::Run(Session& session, const Output& output) {
  const Deed& deed = Wanted();
  const auto names = {"save", "diff", "restore", "show"};
  const bool needsOne = std::ranges::count(names, deed.word->get_name()) > 0;
  if (needsOne && name_.empty() == file_.empty()) {
    session.Say("setup " + deed.word->get_name() +
                ": give either the name of a set-up, or a file with --file.");
    return ExitCode::Usage;
  }
  return deed.carryOut(*this, session, output);
}

std::optional<setup::Setup> SetupCommand::Given(Session& session) const {
  const auto found = file_.empty()
                         ? StoreOf(session).Load(name_)
                         : setup::LoadSetup(session.station.FilesHere(), AbsolutePathOf(file_));
  if (found) return *found;
  session.Say(found.Why().Text());
  return std::nullopt;
}

bool SetupCommand::MayKeep(Session& session, setup::SetupStore& store,
                           const std::string& name) const {
  if (const std::string problem = store.ProblemOf(name); !problem.empty()) {
    session.Say("The name \"" + name + "\" cannot be used: " + problem + ".");
    return false;
  }
  if (replace_ || !store.Has(name)) return true;
  session.Say("There is a set-up \"" + name + "\" already; --replace replaces it.");
  return false;
}

ExitCode SetupCommand::Save(Session& session, const Output& output) {
  auto store = StoreOf(session);
  const fs::path file = file_.empty() ? fs::path() : AbsolutePathOf(file_);
  Files& files = session.station.FilesHere();
  if (file.empty() && !MayKeep(session, store, name_)) return ExitCode::Failure;
  if (!file.empty() && !replace_ && files.Read(file, 0)) {
    session.Say("There is a file " + TextOf(file) + " already; --replace replaces it.");
    return ExitCode::Failure;
  }
  const std::string name = file.empty() ? name_ : TextOf(file.stem().stem());
  const auto read = session.station.Setups().Read(name, KESTREL_VERSION);
  session.EndProgress();
  if (!read) return session.Fail(read.Why());
  if (file.empty()) {
    store.Save(*read);
  } else {
    setup::WriteSetup(files, file, *read);
  }
  return Written(output, name, file.empty() ? store.FileOf(name_) : file);
}

ExitCode SetupCommand::Diff(Session& session, const Output& output) {
  const auto saved = Given(session);
  if (!saved) return ExitCode::Failure;
  const auto now = session.station.Setups().Read("", KESTREL_VERSION);
  session.EndProgress();
  if (!now) return session.Fail(now.Why());
  const auto all = DifferenceOf(*saved, *now);
  WriteDifferences(output, saved->name, all);
  return all.empty() ? ExitCode::Success : ExitCode::Different;
}

ExitCode SetupCommand::Restore(Session& session, const Output& output) {
  const auto saved = Given(session);
  if (!saved) return ExitCode::Failure;
  const auto report = session.station.Setups().Restore(*saved, choice_);
  session.EndProgress();
  WriteRestored(output, report);
  return EndOf(report);
}

ExitCode SetupCommand::List(Session& session, const Output& output) {
  WriteSetups(output, StoreOf(session).List());
  return ExitCode::Success;
}

ExitCode SetupCommand::Show(Session& session, const Output& output) {
  const auto saved = Given(session);
  if (!saved) return ExitCode::Failure;
  WriteSetup(output, *saved);
  return ExitCode::Success;
}

ExitCode SetupCommand::Delete(Session& session, const Output& output) {
  auto store = StoreOf(session);
  if (!store.Has(name_)) {
    session.Say(store.Load(name_).Why().Text());
    return ExitCode::Failure;
  }
  store.Delete(name_);
  if (output.json) output.Write({{"deleted", name_}});
  return ExitCode::Success;
}

ExitCode SetupCommand::Export(Session& session, const Output& output) {
  const auto saved = StoreOf(session).Load(name_);
  if (!saved) {
    session.Say(saved.Why().Text());
    return ExitCode::Failure;
  }
  const fs::path file = AbsolutePathOf(file_);
  Files& files = session.station.FilesHere();
  if (!replace_ && files.Read(file, 0)) {
    session.Say("There is a file " + TextOf(file) + " already; --replace replaces it.");
    return ExitCode::Failure;
  }
  setup::WriteSetup(files, file, *saved);
  return Written(output, name_, file);
}

ExitCode SetupCommand::Import(Session& session, const Output& output) {
  auto found = setup::LoadSetup(session.station.FilesHere(), AbsolutePathOf(file_));
  if (!found) {
    session.Say(found.Why().Text());
    return ExitCode::Failure;
  }
  setup::Setup taken = *found;
  if (!newName_.empty()) taken.name = newName_;
  auto store = StoreOf(session);
  if (!MayKeep(session, store, taken.name)) return ExitCode::Failure;
  store.Save(taken);
  return Written(output, taken.name, store.FileOf(taken.name));
}

}  // namespace kestrel
