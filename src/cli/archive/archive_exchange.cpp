// Export and import from the command line.
// SPDX-License-Identifier: MIT
#include "cli/archive/archive_exchange.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <cstring>
#include <utility>

#include "cli/archive/archive_report.h"
#include "cli/word_choice.h"
#include "exchange/kept_note.h"
#include "exchange/texts.h"
#include "numeric/hash.h"
#include "record/record_count.h"
#include "record/utc_time.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

using archive::Archive;
using archive::NewRecord;

// More than any file that a hundred thousand records make.
constexpr const char* kLast = "last";
constexpr std::size_t kLargestFile = 1'000'000'000;

std::vector<std::string> FormatNames() {
  std::vector<std::string> names;
  for (const auto format : exchange::kExportFormats) names.push_back(NameOf(format));
  return names;
}

std::vector<std::int64_t> IdsOfWide(Archive& archive, const std::string& name) {
  const archive::WideSet set = FoundWideSet(archive, name);
  std::vector<std::int64_t> ids;
  for (const archive::KeptRecord& kept : set.records) ids.push_back(kept.id);
  if (ids.empty()) throw RuntimeError("All records of the wide spectrum are deleted.");
  return ids;
}

// The same content is the same record, however often it is brought in.
archive::Uid UidOf(const std::string& content, std::size_t number) {
  archive::Uid uid{};
  std::uint64_t hash = kHashOfNothing + number;
  for (std::size_t half = 0; half < uid.size(); half += sizeof hash) {
    hash = HashOf(content, hash);
    std::memcpy(uid.data() + half, &hash, sizeof hash);
  }
  return uid;
}

}  // namespace

void ExportWord::AddTo(CLI::App& word) {
  word.add_option("id", ids_, "Numbers of records, as \"archive list\" shows them")
      ->check(RecordNumberProblem);
  word.add_option("--wide", wide_, "All records of this wide spectrum, or of the last")
      ->check([](const std::string& text) { return WideProblem(text, kLast); })
      ->type_name("NAME");
  word.parse_complete_callback([this] {
    if (ids_.empty() == wide_.empty()) {
      throw CLI::ValidationError("id", "give either numbers of records, or --wide with a name");
    }
  });
  word.add_option("--format", format_, "Format of the file")
      ->required()
      ->check(CLI::IsMember(FormatNames()));
  word.add_option("--out", file_, "The file; an earlier one is replaced")
      ->required()
      ->type_name("FILE");
}

void ExportWord::Run(Session& session, const Output& output, Archive& archive) const {
  std::vector<exchange::NotedRecord> records;
  const std::vector<std::int64_t> ids = wide_.empty() ? ids_ : IdsOfWide(archive, wide_);
  for (const std::int64_t id : ids) {
    auto kept = archive.Get(id);
    if (!kept) throw RuntimeError("There is no record " + std::to_string(id) + " in the archive.");
    records.push_back(exchange::Noted(std::move(*kept)));
  }
  const auto content = Exported(records, *exchange::FormatNamed(format_));
  if (!content) throw RuntimeError(content.Why().Text());
  session.station.FilesHere().ReplaceWhole(AbsolutePathOf(file_), *content);
  if (output.json) {
    output.Write({{"file", file_}, {"records", ids}});
  } else {
    output.out << file_ << ": " << RecordCount(std::ssize(ids)) << '\n';
  }
}

void ImportWord::AddTo(CLI::App& word) {
  word.add_option("file", files_, "Data-log files, universal files (58) or WAV files")->required();
  word.add_option("--time", time_, "When it was taken (UTC), where the file does not say")
      ->check(TimeProblem);
  word.add_option("--option", said_.option, "Sample-rate option, where the file does not say")
      ->check(CLI::Range(0, 3));
  AddChoice(word, "--range", said_.range, kRangeWords,
            "Signal range in g, where the file does not say");
  AddChoice(word, "--window", said_.window, kWindowWords,
            "FFT window, where the file does not say");
  remarks_.AddTo(word);
}

void ImportWord::Run(Session& session, const Output& output, Archive& archive,
                     const std::string& bench) const {
  std::vector<NewRecord> records;
  for (const std::string& file : files_) AddRecords(session, file, records);
  for (NewRecord& record : records) record.bench = bench;
  archive.KeepAll(records);
  if (output.json) {
    output.Write({{"imported", records.size()}});
  } else {
    output.out << RecordCount(std::ssize(records)) << '\n';
  }
}

void ImportWord::AddRecords(Session& session, const std::string& file,
                            std::vector<NewRecord>& records) const {
  const auto content = session.station.FilesHere().Read(AbsolutePathOf(file), kLargestFile);
  if (!content) throw RuntimeError("The file " + file + " cannot be read.");
  const auto imported = exchange::Imported(file, *content);
  if (!imported) throw RuntimeError(imported.Why().Text());
  for (const std::string& notice : imported->notices) session.Say(file + ": " + notice);
  for (std::size_t i = 0; i < imported->records.size(); ++i) {
    const std::string where =
        imported->records.size() == 1 ? file : file + ", record " + std::to_string(i + 1);
    NewRecord record = RecordFrom(imported->records[i], where);
    record.uid = UidOf(*content, i);
    // A name of a file may be any bytes.
    record.program = "imported from " + exchange::CleanUtf8(TextOf(PathOf(file).filename()));
    records.push_back(std::move(record));
  }
}

NewRecord ImportWord::RecordFrom(const exchange::ImportedRecord& imported,
                                 const std::string& where) const {
  auto record = exchange::RecordOf(imported, said_);
  if (!record) throw RuntimeError(where + ": " + record.Why().Text());
  NewRecord made{.record = *record, .remarks = remarks_.Remarks()};
  if (!made.record.Taken() && time_.empty()) {
    throw RuntimeError(where + ": the file does not say when it was taken; give --time.");
  }
  if (!made.record.Taken()) made.record.time = *UtcFrom(time_);
  if (made.remarks.note.empty()) made.remarks.note = imported.note;
  return made;
}

}  // namespace kestrel
