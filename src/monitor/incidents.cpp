// Incidents begun, counted and ended.
// SPDX-License-Identifier: MIT
#include "monitor/incidents.h"

#include <algorithm>
#include <utility>

#include "exchange/texts.h"

namespace kestrel::monitor {
namespace {

constexpr std::array<const char*, kIncidents> kWords{
    "sensor away",    "sensor silent", "settings changed", "sensor restarted", "adapter replaced",
    "archive away",   "disk full",     "record refused",   "broker away",      "clock stepped",
    "machine asleep", "late",          "capture lost",     "not running"};

}  // namespace

const char* WordOf(Incident kind) {
  return kWords.at(static_cast<std::size_t>(kind));
}

std::string OneLine(const std::string& text) {
  constexpr std::size_t kMost = 2000;
  std::string line;
  for (const char c : exchange::CleanUtf8(text.substr(0, kMost))) {
    if (c == '\n') {
      line += ' ';
    } else if (c != '\r') {
      line += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
    }
  }
  return line;
}

archive::JournalEntry Incidents::Entry(Incident kind, const std::string& text) const {
  return {.uid = archive::NewUid(),
          .bench = names_.bench,
          .sensor = names_.sensor,
          .kind = WordOf(kind),
          .text = OneLine(text)};
}

void Incidents::Restore(std::span<const archive::JournalEntry> open) {
  for (const archive::JournalEntry& entry : open) {
    const auto* word = std::ranges::find_if(kWords, [&](const char* w) { return entry.kind == w; });
    if (word == kWords.end() || entry.ended) continue;
    open_[static_cast<Incident>(word - kWords.begin())] = {entry, {}, {}};
  }
}

void Incidents::Begin(Incident kind, const std::string& text, const Now& now) {
  BeginAt(kind, text, now.wall, now);
}

void Incidents::BeginAt(Incident kind, const std::string& text,
                        std::chrono::system_clock::time_point began, const Now& now) {
  if (IsOpen(kind)) return;
  archive::JournalEntry entry = Entry(kind, text);
  entry.began = began;
  put_(entry);
  open_[kind] = {std::move(entry), now.boot, began};
}

std::vector<archive::JournalEntry> Incidents::OpenEntries() const {
  std::vector<archive::JournalEntry> entries;
  entries.reserve(open_.size());
  for (const auto& [kind, lasting] : open_) entries.push_back(lasting.entry);
  return entries;
}

// The time of day may have been set meanwhile: it lasted as long as it lasted.
void Incidents::End(Incident kind, const Now& now) {
  const auto found = open_.find(kind);
  if (found == open_.end()) return;
  Lasting& lasting = found->second;
  const bool isOurs = lasting.bootWall != std::chrono::system_clock::time_point{};
  const auto passed =
      std::chrono::duration_cast<std::chrono::system_clock::duration>(now.boot - lasting.boot);
  lasting.entry.ended =
      isOurs ? lasting.entry.began + passed : std::max(now.wall, lasting.entry.began);
  put_(lasting.entry);
  open_.erase(found);
}

void Incidents::Missed(Incident kind, std::int64_t captures) {
  const auto found = open_.find(kind);
  if (captures <= 0 || found == open_.end()) return;
  missed_ += captures;
  found->second.entry.missed += captures;
  put_(found->second.entry);
}

void Incidents::Once(Incident kind, const std::string& text,
                     std::chrono::system_clock::time_point from,
                     std::chrono::system_clock::time_point to, std::int64_t missed) {
  archive::JournalEntry entry = Entry(kind, text);
  entry.began = from;
  entry.ended = to;
  entry.missed = missed;
  missed_ += missed;
  put_(entry);
}

}  // namespace kestrel::monitor
