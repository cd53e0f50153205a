// What each word about the archive does.
// SPDX-License-Identifier: MIT
#include "cli/archive/archive_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>

#include "archive/place.h"
#include "archive/rescue.h"
#include "cli/archive/archive_report.h"
#include "cli/record_report.h"
#include "record/record_count.h"

namespace kestrel {
namespace {

using archive::Archive;
using archive::KeptRecord;
using database::Access;

// Rows read at once for a list.
constexpr std::size_t kBlock = 256;

// Throws where there is no such record.
KeptRecord Found(Archive& archive, std::int64_t id) {
  auto record = archive.Get(id);
  if (!record) throw RuntimeError("There is no record " + std::to_string(id) + " in the archive.");
  return std::move(*record);
}

const archive::Place& ChosenPlace(const Session& session) {
  const archive::Place& place = session.ArchivePlace();
  if (place.text.empty()) throw RuntimeError("No archive is chosen; name one with --archive.");
  return place;
}

// The damaged archive; throws in plain words where it is none at all.
Archive OpenDamaged(const Session& session) {
  try {
    return archive::OpenForRescue(ChosenPlace(session));
  } catch (const database::DatabaseError& error) {
    if (error.fault != database::Fault::Corrupt) throw;
    throw RuntimeError("Nothing can be read of " + archive::Shown(session.ArchivePlace()) +
                       ": it is not an archive, or its very beginning is damaged.");
  }
}

}  // namespace

Archive OpenArchive(const Session& session, Access access) {
  return archive::Open(ChosenPlace(session), access);
}

CLI::App* ArchiveCommand::Add(const char* name, const char* text, const Deed& deed) {
  CLI::App* word = word_->add_subcommand(name, text);
  deeds_.emplace_back(word, deed);
  return word;
}

void ArchiveCommand::AddIds(CLI::App& word) {
  word.add_option("id", ids_, "Numbers of records, as \"archive list\" shows them")
      ->required()
      ->check(RecordNumberProblem);
}

void ArchiveCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("archive", "Find, show, change and exchange kept records");
  word_->require_subcommand(1);
  CLI::App* list = Add("list", "List records, the latest first", &ArchiveCommand::List);
  filter_.AddTo(*list);
  list->add_option("--limit", most_, "List at most this many")->check(CLI::PositiveNumber);
  CLI::App* show = Add("show", "Report records", &ArchiveCommand::Show);
  AddIds(*show);
  show->add_flag("--data", withData_, "Report every point in the text as well");
  CLI::App* note = Add("note", "Change machine, point, orientation, speed, note or tags of records",
                       &ArchiveCommand::Note);
  AddIds(*note);
  remarks_.AddTo(*note);
  CLI::App* remove =
      Add("delete", "Delete records; --undo brings them back", &ArchiveCommand::Delete);
  AddIds(*remove);
  auto* back = remove->add_flag("--undo", bringBack_, "Bring deleted records back");
  remove->add_flag("--for-good", forGood_, "Remove them for good")->excludes(back);
  Add("check", "See whether anything is damaged", &ArchiveCommand::Check);
  CLI::App* rescue =
      Add("rescue", "Save what can be read of a damaged archive", &ArchiveCommand::Rescue);
  rescue->add_option("--into", into_, "The archive that takes it")->required()->type_name("FILE");
  export_.AddTo(
      *Add("export", "Write records into a file for other programs", &ArchiveCommand::Export));
  journal_.AddTo(*Add("journal", "List the incidents and alarms of monitoring",
                      [](ArchiveCommand& self, Session& session, const Output& output) {
                        return self.journal_.Run(OpenArchive(session, Access::ReadOnly), output);
                      }));
  import_.AddTo(*Add("import", "Import records from files", &ArchiveCommand::Import));
}

ExitCode ArchiveCommand::Run(Session& session, const Output& output) {
  const auto chosen =
      std::ranges::find_if(deeds_, [](const auto& deed) { return deed.first->parsed(); });
  return chosen->second(*this, session, output);
}

ExitCode ArchiveCommand::List(const Session& session, const Output& output) {
  Archive archive = OpenArchive(session, Access::ReadOnly);
  std::vector<std::int64_t> ids = archive.Find(filter_.Filter());
  if (most_ > 0) ids.resize(std::min(ids.size(), static_cast<std::size_t>(most_)));
  Json all = Json::array();
  if (!output.json) output.out << ListHead();
  for (std::size_t from = 0; from < ids.size(); from += kBlock) {
    const auto part = std::span(ids).subspan(from, std::min(kBlock, ids.size() - from));
    for (const KeptRecord& record : archive.List(part)) {
      if (output.json)
        all.push_back(KeptJson(record));
      else
        output.out << ListLine(record);
    }
  }
  if (output.json) output.Write(all);
  return ExitCode::Success;
}

ExitCode ArchiveCommand::Show(const Session& session, const Output& output) {
  Archive archive = OpenArchive(session, Access::ReadOnly);
  for (const std::int64_t id : ids_) {
    const KeptRecord record = Found(archive, id);
    if (output.json) {
      Json json = KeptJson(record);
      json["record"] = RecordJson({.record = record.record});
      output.Write(json);
      continue;
    }
    PrintKept(output.out, record);
    WriteRecord(output, {.record = record.record, .withData = withData_});
  }
  return ExitCode::Success;
}

ExitCode ArchiveCommand::Note(const Session& session, const Output& output) {
  const archive::RemarksChange change = remarks_.Change();
  if (change.IsNone())
    throw RuntimeError(
        "Nothing to change was given: name --machine, --point, --orientation, --rpm, --note "
        "or --tag.");
  Archive archive = OpenArchive(session, Access::ReadWrite);
  std::vector<std::pair<std::int64_t, archive::RemarksChange>> changes;
  for (const std::int64_t id : ids_) {
    (void)Found(archive, id);
    changes.emplace_back(id, change);
  }
  archive.ChangeRemarks(changes);
  if (output.json) output.Write({{"noted", ids_}});
  return ExitCode::Success;
}

ExitCode ArchiveCommand::Delete(Session& session, const Output& output) {
  Archive archive = OpenArchive(session, Access::ReadWrite);
  for (const std::int64_t id : ids_) (void)Found(archive, id);
  if (bringBack_)
    archive.BringBack(ids_);
  else if (forGood_)
    archive.Remove(ids_);
  else
    archive.Delete(ids_, session.station.Road().seams.clock.UtcNow());
  if (output.json) output.Write({{bringBack_ ? "brought_back" : "deleted", ids_}});
  return ExitCode::Success;
}

ExitCode ArchiveCommand::Check(const Session& session, const Output& output) {
  Archive archive = OpenArchive(session, Access::ReadOnly);
  const std::vector<std::string> damage = archive.Damage();
  if (output.json) {
    output.Write({{"damage", damage}});
  } else if (damage.empty()) {
    output.out << RecordCount(archive.Count()) << ", nothing is damaged.\n";
  } else {
    for (const std::string& line : damage) output.out << line << '\n';
  }
  return damage.empty() ? ExitCode::Success : ExitCode::Failure;
}

ExitCode ArchiveCommand::Rescue(const Session& session, const Output& output) {
  Archive from = OpenDamaged(session);
  Archive into = archive::Open({into_});
  const archive::Rescued rescued = archive::Rescue(from, into);
  if (output.json) {
    output.Write({{"kept", rescued.kept},
                  {"lost", rescued.lost},
                  {"without_source", rescued.withoutSource},
                  {"journal_kept", rescued.journalKept},
                  {"journal_lost", rescued.journalLost},
                  {"journal_whole", rescued.journalLost == 0}});
  } else {
    output.out << RecordCount(rescued.kept) << " kept, " << rescued.lost << " could not be read.\n";
    if (rescued.withoutSource > 0) {
      output.out << "Of " << rescued.withoutSource
                 << " of them the sensor, the program and the bench could not be read.\n";
    }
    if (rescued.journalLost > 0) {
      output.out << "Of the journal's entries " << rescued.journalKept << " were kept, "
                 << rescued.journalLost << " could not be read.\n";
    }
  }
  const bool isAll = rescued.lost == 0 && rescued.withoutSource == 0 && rescued.journalLost == 0;
  return isAll ? ExitCode::Success : ExitCode::Failure;
}

ExitCode ArchiveCommand::Export(Session& session, const Output& output) {
  Archive archive = OpenArchive(session, Access::ReadOnly);
  export_.Run(session, output, archive);
  return ExitCode::Success;
}

ExitCode ArchiveCommand::Import(Session& session, const Output& output) {
  Archive archive = OpenArchive(session, Access::ReadWrite);
  import_.Run(session, output, archive, session.Bench());
  return ExitCode::Success;
}

}  // namespace kestrel
