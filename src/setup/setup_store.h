// Where set-ups are kept: one file a name, in a folder of the user's data.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "archive/place.h"
#include "exchange/outcome.h"
#include "seams/files.h"
#include "setup/setup.h"

namespace kestrel::setup {

// "setups" beside the archive's usual place; empty where no home is known.
[[nodiscard]] std::filesystem::path SetupFolderBeside(const archive::Place& usualArchive);
[[nodiscard]] std::filesystem::path UsualSetupFolder(
    const std::function<std::string(const char* name)>& environment);

// The set-up of any file, and any file written. A fault names the file.
[[nodiscard]] exchange::Exchanged<Setup> LoadSetup(Files& files, const std::filesystem::path& file);
// Whole or not at all. Throws RuntimeError with path and reason.
void WriteSetup(Files& files, const std::filesystem::path& file, const Setup& setup);

class SetupStore {
 public:
  struct Entry {
    std::string name;
    std::optional<Setup> setup;
    std::string trouble;  // why there is none
  };

  SetupStore(Files& files, std::filesystem::path folder)
      : files_(files), folder_(std::move(folder)) {}

  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }

  // Why a text cannot be a name; empty when it can. A name is that of a file on every system.
  [[nodiscard]] std::string ProblemOf(const std::string& name) const;
  [[nodiscard]] std::filesystem::path FileOf(const std::string& name) const;

  // By name, damaged ones with their trouble.
  [[nodiscard]] std::vector<Entry> List();
  [[nodiscard]] bool Has(const std::string& name);
  [[nodiscard]] exchange::Exchanged<Setup> Load(const std::string& name);
  // Under its name, in the place of an earlier one. Throws RuntimeError with path and reason.
  void Save(const Setup& setup);
  void Delete(const std::string& name);

 private:
  Files& files_;
  std::filesystem::path folder_;
};

}  // namespace kestrel::setup
