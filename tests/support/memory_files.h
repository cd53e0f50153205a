// Files kept in memory.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "numeric/runtime_error.h"
#include "seams/files.h"

namespace kestrel {

// Files kept in memory: by path, with their whole content. Program folder "/program", working
// folder
// "/working".
class MemoryFiles : public Files {
 public:
  [[nodiscard]] std::filesystem::path ProgramFolder() override { return "/program"; }
  [[nodiscard]] std::filesystem::path WorkingFolder() override { return "/working"; }

  [[nodiscard]] std::filesystem::path DocumentsFolder() override { return "/documents"; }
  [[nodiscard]] bool CanWriteIn(const std::filesystem::path& folder) override {
    return !readOnly.contains(folder);
  }

  [[nodiscard]] std::optional<std::string> Read(const std::filesystem::path& file,
                                                std::size_t limit) override {
    const auto found = contents.find(file);
    if (found == contents.end()) return std::nullopt;
    return found->second.substr(0, limit);
  }

  [[nodiscard]] std::vector<std::string> List(const std::filesystem::path& folder) override {
    std::vector<std::string> names;
    for (const auto& [path, content] : contents) {
      if (path.parent_path() == folder) names.push_back(path.filename().string());
    }
    return names;
  }

  void ReplaceWhole(const std::filesystem::path& file, std::string_view content) override {
    if (!failure.empty()) throw RuntimeError(file.string() + ": " + failure);
    contents[file] = content;
  }

  void MakeFolder(const std::filesystem::path& folder) override {
    if (!failure.empty()) throw RuntimeError(folder.string() + ": " + failure);
  }

  void Remove(const std::filesystem::path& file) override {
    if (!failure.empty()) throw RuntimeError(file.string() + ": " + failure);
    contents.erase(file);
  }

  std::map<std::filesystem::path, std::string> contents;
  std::set<std::filesystem::path> readOnly;  // folders
  std::string failure;  // reason why no file can be written; empty when they can
};

}  // namespace kestrel
