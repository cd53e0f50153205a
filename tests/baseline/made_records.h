// Spectra of known words in an archive in memory.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <random>

#include "archive/archive.h"
#include "baseline/settings.h"
#include "baseline/spectra.h"
#include "database/sqlite_database.h"

namespace kestrel::baseline {

using Word = Spectra::Word;

// The word of an axis and a bin.
using WordsOf = std::function<int(Axis axis, int bin)>;

inline std::int32_t InfoWord(const Settings& settings) {
  return settings.option << 14 | settings.window << 12 | settings.range << 10 | settings.averages;
}

inline Moment MinuteOf(int minute) {
  return std::chrono::system_clock::from_time_t(1'790'000'000 + 60LL * minute);
}

inline archive::NewRecord MadeSpectrum(int minute, const WordsOf& words,
                                       const Settings& settings = {
                                           .option = 0, .window = 1, .range = 3, .averages = 4}) {
  archive::NewRecord made{.uid = archive::NewUid(), .program = "0.1.0", .bench = "bench 1"};
  Record& record = made.record;
  record.settings = SettingsFromWords(InfoWord(settings), 0);
  record.scaledRange = record.settings.range;
  record.lsbWeight = LsbWeightOf(record.scaledRange, RecordKind::Spectrum);
  record.time = MinuteOf(minute);
  for (const Axis axis : kAxes) {
    for (int bin = 0; bin <= kFftWidth; ++bin) {
      record.Of(axis).raw(bin) = words(axis, bin);
      record.Of(axis).data(bin) = record.Of(axis).raw(bin) * record.lsbWeight;
    }
  }
  return made;
}

// All bins at one word.
inline WordsOf Flat(int word) {
  return [word](Axis, int) { return word; };
}

class MadeArchive {
 public:
  archive::Archive archive{
      std::make_unique<database::SqliteDatabase>(database::SqliteChoice{.file = ":memory:"})};

  std::int64_t Keep(archive::NewRecord record, const std::vector<std::string>& tags = {},
                    const std::string& machine = "Pump 3", const std::string& point = "drive end") {
    record.remarks = {.machine = machine, .point = point, .tags = tags};
    return archive.Keep(record);
  }
};

}  // namespace kestrel::baseline
