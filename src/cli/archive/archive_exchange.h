// Records of the archive as files of others, and back.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "cli/archive/archive_options.h"
#include "cli/command.h"
#include "exchange/exported.h"
#include "exchange/imported.h"

namespace kestrel {

// "archive export --format F --out FILE ID...".
class ExportWord {
 public:
  void AddTo(CLI::App& word);  // `this` outlives `word`
  // One file of all of them, whole or not at all. Throws RuntimeError.
  void Run(Session& session, const Output& output, archive::Archive& archive) const;

 private:
  std::string format_;
  std::string file_;
  std::vector<std::int64_t> ids_;
  std::string wide_;  // the name of a wide spectrum whose records go into the file
};

// "archive import FILE...".
class ImportWord {
 public:
  void AddTo(CLI::App& word);
  // All records of all files, or none. Throws RuntimeError.
  void Run(Session& session, const Output& output, archive::Archive& archive,
           const std::string& bench) const;

 private:
  void AddRecords(Session& session, const std::string& file,
                  std::vector<archive::NewRecord>& records) const;
  [[nodiscard]] archive::NewRecord RecordFrom(const exchange::ImportedRecord& imported,
                                              const std::string& where) const;

  std::vector<std::string> files_;
  std::string time_;
  exchange::Said said_;
  RemarkOptions remarks_;
};

}  // namespace kestrel
