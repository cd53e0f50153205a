// An archive whose file was damaged: read, repaired where it can be, never taken for whole.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "analysis/peaks.h"
#include "analysis/spectrum.h"
#include "archive/archive.h"
#include "archive/journal.h"
#include "archive/wide_sets.h"
#include "database/sqlite_database.h"
#include "input.h"
#include "require.h"
#include "support/random_records.h"
#include "support/temporary_folder.h"

namespace kestrel::archive {
namespace {

std::unique_ptr<database::Database> Opened(const std::filesystem::path& file,
                                           database::Access access) {
  return std::make_unique<database::SqliteDatabase>(database::SqliteChoice{
      .file = file.string(), .access = access, .patience = std::chrono::milliseconds(0)});
}

NewRecord RecordOf(unsigned seed) {
  NewRecord record{.record = RandomRecords(seed).Next(), .program = "1", .bench = "bench"};
  record.uid[0] = static_cast<std::uint8_t>(seed);
  record.remarks = {.machine = "pump", .point = "drive end", .note = "n", .tags = {"a", "b"}};
  if (seed % 2 == 0) record.wide = WideMark{.set = record.uid};
  return record;
}

// A whole archive, and the folder in which damaged ones are looked at.
class Bench {
 public:
  Bench() {
    const std::filesystem::path file = folder_.path() / "whole.db";
    {
      Archive archive(Opened(file, database::Access::ReadWrite));
      for (unsigned seed = 0; seed < 6; ++seed) archive.Keep(RecordOf(seed));
      const JournalEntry entry{.bench = "bench", .sensor = "s", .kind = "away", .text = "gone"};
      PutEntries(archive, std::vector{entry});
    }
    whole_ = folder_.Content("whole.db");
  }
  // Places and bytes for them, three and one of the input each; what remains cuts the file.
  std::filesystem::path Damaged(Input input) {
    std::string bytes = whole_;
    const std::size_t cut = input.Word();
    if (input.Byte() == 0) bytes.resize(bytes.size() - cut % bytes.size());
    while (!input.Empty() && !bytes.empty()) {
      const std::size_t place = (std::size_t{input.Word()} << 8U) + input.Byte();
      bytes[place % bytes.size()] = static_cast<char>(input.Byte());
    }
    for (const char* left : {"damaged.db-wal", "damaged.db-shm", "damaged.db-journal"}) {
      std::filesystem::remove(folder_.path() / left);
    }
    return folder_.Write("damaged.db", bytes);
  }

 private:
  TemporaryFolder folder_;
  std::string whole_;
};

template <typename Action>
void Try(Action action) {
  try {
    action();
  } catch (const database::DatabaseError& error) {
    Require(std::string(error.what()).size() > 3, "a fault is told");
  }
}

// Whatever is found can be measured and shown.
void Measure(const KeptRecord& kept) {
  const Record& record = kept.record;
  Require(record.kind == RecordKind::Time || record.kind == RecordKind::Spectrum, "of a kind");
  static_cast<void>(LevelsFor(record));
  for (const Axis axis : kAxes) {
    if (const auto spectrum = analysis::SpectrumOf(record, axis, {.ownRange = true})) {
      static_cast<void>(analysis::FindPeaks(*spectrum));
    }
  }
}

void ReadAll(Archive& archive) {
  std::vector<std::int64_t> ids;
  Try([&] { ids = archive.Find({}); });
  if (ids.size() > 100) ids.resize(100);
  Try([&] { static_cast<void>(archive.List(ids)); });
  for (const std::int64_t id : ids) {
    Try([&] {
      if (const auto kept = archive.Get(id)) Measure(*kept);
    });
  }
  Try([&] { static_cast<void>(archive.Times({})); });
  Try([&] { static_cast<void>(archive.Machines()); });
  Try([&] { static_cast<void>(EntriesOf(archive)); });
  Try([&] {
    for (const Uid& uid : FindWideSets(archive, {})) static_cast<void>(GetWideSet(archive, uid));
  });
  Try([&] { static_cast<void>(archive.Damage()); });
}

}  // namespace
}  // namespace kestrel::archive

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel;
  using namespace kestrel::archive;
  static Bench bench;
  const std::filesystem::path file = bench.Damaged({data, size});
  Try([&] {
    Archive archive = Archive::ForReading(Opened(file, database::Access::ReadOnly));
    ReadAll(archive);
  });
  Try([&] {
    Archive archive(Opened(file, database::Access::ReadWrite));
    Try([&] { archive.Keep(RecordOf(7)); });
    ReadAll(archive);
  });
  return 0;
}
