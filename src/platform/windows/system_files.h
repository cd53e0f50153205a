// The disk of Windows, and the places the program keeps files in.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/files.h"

namespace kestrel {

// The disk. Only regular files are read or replaced.
class SystemFiles : public Files {
 public:
  [[nodiscard]] std::filesystem::path ProgramFolder() override;
  [[nodiscard]] std::filesystem::path WorkingFolder() override;
  // The user's documents folder, or the profile folder where there is none.
  [[nodiscard]] std::filesystem::path DocumentsFolder() override;
  [[nodiscard]] bool CanWriteIn(const std::filesystem::path& folder) override;
  [[nodiscard]] std::optional<std::string> Read(const std::filesystem::path& file,
                                                std::size_t limit) override;
  [[nodiscard]] std::vector<std::string> List(const std::filesystem::path& folder) override;
  // The content is on the disk before it takes the earlier file's place.
  void ReplaceWhole(const std::filesystem::path& file, std::string_view content) override;
  void MakeFolder(const std::filesystem::path& folder) override;
  void Remove(const std::filesystem::path& file) override;
};

}  // namespace kestrel
