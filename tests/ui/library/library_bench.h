// The program as its entry point starts it, keeping records in a file of the test's own.
// SPDX-License-Identifier: MIT
#pragma once

#include "archive/archive.h"
#include "support/temporary_database.h"
#include "ui/analyser/analyser_bench.h"

namespace kestrel {

class LibraryBench : public AnalyserBench {
 protected:
  // With an archive, by default the file.
  frm1& StartKeeping() { return StartKeeping(database_.Name()); }
  frm1& StartKeeping(const std::string& place) {
    windows_.reset();
    windows_ = std::make_unique<QtStartWindows>(
        core_, SimulatorControl{[] {}, [] { return true; }, [](bool) {}},
        ArchiveChoice{.place = {place},
                      .usual = {(folder_.path() / "usual" / "archive.db").string()},
                      .program = "0.1.0",
                      .bench = "bench 1"});
    Main(core_, *windows_, {.quickStart = true, .interfaceWithoutConfig = kNoInterface});
    ChooseShortCaptures();
    return Window();
  }
  RecordKeeper& Keeper() { return Window().Keeper(); }
  bool Kept() { return Keeper().Finish(std::chrono::seconds(20)); }
  archive::Archive Archived() { return archive::Archive(database_.Connect()); }
  // All that is archived, the latest first, with points.
  std::vector<archive::KeptRecord> All() {
    archive::Archive there = Archived();
    std::vector<archive::KeptRecord> all;
    for (const std::int64_t id : there.Find({})) all.push_back(*there.Get(id));
    return all;
  }

  TemporaryFolder folder_;
  TemporaryFile database_;
};

}  // namespace kestrel
