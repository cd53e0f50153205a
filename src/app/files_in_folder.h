// Files with a folder of choice in the place of the program's own.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/files.h"

namespace kestrel {

// Other files, with a folder of choice in the place of the program's own.
class FilesInFolder : public Files {
 public:
  explicit FilesInFolder(Files& files) : files_(files), folder_(files.ProgramFolder()) {}

  void SetFolder(std::filesystem::path folder) { folder_ = std::move(folder); }

  [[nodiscard]] std::filesystem::path ProgramFolder() override { return folder_; }
  [[nodiscard]] std::filesystem::path WorkingFolder() override { return files_.WorkingFolder(); }
  [[nodiscard]] std::filesystem::path DocumentsFolder() override {
    return files_.DocumentsFolder();
  }
  [[nodiscard]] bool CanWriteIn(const std::filesystem::path& folder) override {
    return files_.CanWriteIn(folder);
  }
  [[nodiscard]] std::optional<std::string> Read(const std::filesystem::path& file,
                                                std::size_t limit) override {
    return files_.Read(file, limit);
  }
  [[nodiscard]] std::vector<std::string> List(const std::filesystem::path& folder) override {
    return files_.List(folder);
  }
  void ReplaceWhole(const std::filesystem::path& file, std::string_view content) override {
    files_.ReplaceWhole(file, content);
  }
  void MakeFolder(const std::filesystem::path& folder) override { files_.MakeFolder(folder); }
  void Remove(const std::filesystem::path& file) override { files_.Remove(file); }

 private:
  Files& files_;
  std::filesystem::path folder_;
};

}  // namespace kestrel
