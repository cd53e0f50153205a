// The commands about the archive: look, amend, delete, check, rescue, export, import.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "archive/place.h"
#include "cli/archive/archive_exchange.h"
#include "cli/archive/archive_options.h"
#include "cli/archive/journal_word.h"
#include "cli/command.h"

namespace kestrel {

// That which the command line chooses. Throws RuntimeError where there is none, or it cannot be
// opened.
[[nodiscard]] archive::Archive OpenArchive(const Session& session, database::Access access);

// "archive list|show|note|delete|check|rescue|export|import|journal".
class ArchiveCommand : public Command {
 public:
  void AddTo(CLI::App& app) override;
  [[nodiscard]] bool Chosen() const override { return word_->parsed(); }
  [[nodiscard]] bool NeedsSensor() const override { return false; }
  ExitCode Run(Session& session, const Output& output) override;

 private:
  // What a word below "archive" does.
  using Deed = std::function<ExitCode(ArchiveCommand&, Session&, const Output&)>;

  CLI::App* Add(const char* name, const char* text, const Deed& deed);
  void AddIds(CLI::App& word);
  ExitCode List(const Session& session, const Output& output);
  ExitCode Show(const Session& session, const Output& output);
  ExitCode Note(const Session& session, const Output& output);
  ExitCode Delete(Session& session, const Output& output);
  ExitCode Check(const Session& session, const Output& output);
  ExitCode Rescue(const Session& session, const Output& output);
  ExitCode Export(Session& session, const Output& output);
  ExitCode Import(Session& session, const Output& output);

  CLI::App* word_ = nullptr;
  std::vector<std::pair<CLI::App*, Deed>> deeds_;
  FilterOptions filter_;
  ExportWord export_;
  ImportWord import_;
  JournalWord journal_;
  RemarkOptions remarks_;
  std::vector<std::int64_t> ids_;
  std::int64_t most_ = 0;  // records of a list; 0: all
  bool withData_ = false;
  bool bringBack_ = false;
  bool forGood_ = false;
  std::string into_;  // the file that is rescued into
};

}  // namespace kestrel
