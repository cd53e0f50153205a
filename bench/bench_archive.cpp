// Keeping a record beside a bare transaction; 100,000 records on the disk, listed, as a trend.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "archive/archive.h"
#include "archive/packed_words.h"
#include "archive/place.h"
#include "archive/trend.h"
#include "figure.h"
#include "support/random_records.h"

namespace kestrel {
namespace {

using namespace archive;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kKept = 200;
constexpr int kMany = 100'000;
constexpr int kAtOnce = 1000;
constexpr int kWindowful = 40;

template <typename Work>
double Took(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return Milliseconds(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

std::chrono::system_clock::time_point TimeOfRecord(int number) {
  return std::chrono::system_clock::from_time_t(1'763'750'000 + 60 * number);
}

NewRecord Made(RandomRecords& records, int number) {
  NewRecord made{.uid = NewUid(), .record = records.Next(), .program = "0.1.0", .bench = "bench"};
  made.record.time = TimeOfRecord(number);
  made.remarks.machine = "Pump 3";
  made.remarks.point = "Drive end";
  return made;
}

// In turn, so that both meet the same disk.
void Keeping(const std::filesystem::path& folder) {
  RandomRecords records(1);
  Archive archive = Open({(folder / "kept.db").string()});
  database::SqliteDatabase bare({.file = (folder / "bare.db").string()});
  bare.Run("create table thing(id integer primary key, words blob not null)");
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int i = 0; i < kKept; ++i) {
    const NewRecord made = Made(records, i);
    const database::Bytes words = PackedWords(made.record);
    theirs.push_back(Took([&] { bare.Run("insert into thing(words) values($1)", {words}); }));
    ours.push_back(Took([&] { archive.Keep(made); }));
  }
  const double ratio = Median(ours) / Median(theirs);
  Print({.name = "a record kept for good",
         .measured = Amount(Median(ours), 3, "ms"),
         .peer = Amount(Median(theirs), 3, "ms, bare transaction of its words"),
         .ratio = ratio,
         .promise = "at most 1.5",
         .kept = ratio <= 1.5});
}

std::size_t Fill(Archive& archive) {
  RandomRecords records(2);
  std::size_t raw = 0;
  std::vector<NewRecord> part;
  for (int i = 0; i < kMany; ++i) {
    part.push_back(Made(records, i));
    raw += PackedWords(part.back().record).size();
    if (part.size() == kAtOnce) {
      archive.KeepAll(part);
      part.clear();
    }
  }
  return raw;
}

void Size(Archive& archive, std::size_t raw) {
  constexpr double kMega = 1e6;
  const double bound = 1.25 * static_cast<double>(raw) + 20 * kMega;
  const auto size = static_cast<double>(archive.Size());
  Print({.name = "100,000 records on the disk",
         .measured = Amount(size / kMega, 1, "MB"),
         .peer = Amount(static_cast<double>(raw) / kMega, 1, "MB, their words"),
         .ratio = size / static_cast<double>(raw),
         .promise = Amount(bound / kMega, 1, "MB"),
         .kept = size <= bound});
}

void Lists(const Place& place) {
  std::size_t found = 0;
  const double opening = Took([&] {
    Archive archive = Open(place, database::Access::ReadOnly);
    const auto ids = archive.Find({});
    found = archive.List(std::span(ids).first(kWindowful)).size() + ids.size();
  });
  Print({.name = "the list of 100,000 opens",
         .measured = Amount(opening, 1, "ms"),
         .promise = "at most 200 ms",
         .kept = opening <= 200 && found == kMany + kWindowful});
  Archive archive = Open(place, database::Access::ReadOnly);
  const auto ids = archive.Find({});
  std::vector<double> pages;
  for (std::size_t from = 0; from + kWindowful < ids.size(); from += 997) {
    pages.push_back(Took([&] { (void)archive.List(std::span(ids).subspan(from, kWindowful)); }));
  }
  std::size_t points = 0;
  const double trend = Took([&] {
    for (const TrendSeries& series : TrendFor(archive, {}, {.of = TrendOf::Rms}).series) {
      points += series.points.size();
    }
  });
  Print({.name = "a trend over 100,000 records",
         .measured = Amount(trend, 1, "ms"),
         .promise = "at most 150 ms",
         .kept = trend <= 150 && points > kMany / 2});
  std::vector<double> part;
  for (int i = 0; i < 3; ++i) {
    part.push_back(Took([&] {
      (void)TrendFor(archive, {.until = TimeOfRecord(kMany / 50)},
                     {.of = TrendOf::BandRms, .fromHz = 100, .toHz = 1000});
    }));
  }
  const double whole = 50 * Median(part) / 1000;
  Print({.name = "a new level over 100,000 records",
         .measured = Amount(whole, 1, "s, of 2,000"),
         .promise = "at most 10 s",
         .kept = whole <= 10});
  const double frame = 1000.0 / 60;
  Print({.name = "a windowful of rows scrolled to",
         .measured = Amount(Median(pages), 2, "ms"),
         .promise = "at most 16.7 ms",
         .kept = Median(pages) <= frame});
}

}  // namespace
}  // namespace kestrel

int main() {
  using namespace kestrel;
  const std::filesystem::path folder = std::filesystem::current_path();
  Keeping(folder);
  const Place place{(folder / "many.db").string()};
  {
    Archive archive = Open(place);
    const std::size_t raw = Fill(archive);
    Size(archive, raw);
  }
  Lists(place);
  for (const char* name : {"kept.db", "bare.db", "many.db"}) std::filesystem::remove(folder / name);
  return 0;
}
