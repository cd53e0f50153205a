// Entries of the journal as text and JSON.
// SPDX-License-Identifier: MIT
#include "cli/archive/journal_word.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "cli/archive/archive_options.h"
#include "publish/names.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

constexpr std::size_t kLongest = 10'000;  // bytes of a text that is shown

Json JsonOf(const archive::JournalEntry& entry) {
  Json json;
  json["uid"] = archive::TextOf(entry.uid);
  json["bench"] = entry.bench;
  json["sensor"] = entry.sensor;
  json["kind"] = entry.kind;
  json["began"] = UtcText(entry.began);
  json["ended"] = entry.ended ? Json(UtcText(*entry.ended)) : Json();
  json["missed"] = entry.missed;
  json["text"] = entry.text;
  return json;
}

// One line, whatever the texts hold.
std::string LineOf(const archive::JournalEntry& entry) {
  const auto clean = [](const std::string& text) { return publish::CleanText(text, kLongest); };
  std::string line = UtcText(entry.began) + "  " +
                     (entry.ended ? UtcText(*entry.ended) : "still open              ") + "  " +
                     clean(entry.bench) + ", " + clean(entry.sensor) + "  " + clean(entry.kind);
  if (entry.missed > 0) line += ", missed " + std::to_string(entry.missed);
  return line + ": " + clean(entry.text) + "\n";
}

}  // namespace

void JournalWord::AddTo(CLI::App& app) {
  app.add_option("--from", from_, "Lasted until this time (UTC) or later")->check(TimeProblem);
  app.add_option("--until", until_, "Began before this time (UTC)")->check(TimeProblem);
  app.add_option("--bench", filter_.bench, "Of this bench");
  app.add_option("--sensor", filter_.sensor, "Of this sensor");
  app.add_flag("--open", filter_.open, "Only those that are still open");
  app.add_option("--limit", most_, "List at most this many")->check(CLI::PositiveNumber);
}

ExitCode JournalWord::Run(archive::Archive archive, const Output& output) const {
  archive::JournalFilter filter = filter_;
  filter.from = from_.empty() ? std::nullopt : UtcFrom(from_);
  filter.until = until_.empty() ? std::nullopt : UtcFrom(until_);
  Json all = Json::array();
  for (const archive::JournalEntry& entry : archive::EntriesOf(archive, filter, most_)) {
    if (output.json) {
      all.push_back(JsonOf(entry));
    } else {
      output.out << LineOf(entry);
    }
  }
  if (output.json) output.Write(all);
  return ExitCode::Success;
}

}  // namespace kestrel
