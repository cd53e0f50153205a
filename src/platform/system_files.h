// The disk, and the places the program keeps files in.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/files.h"

namespace kestrel {

// The disk. Only regular files are read or replaced. On Linux a link counts as the file it leads
// to, and a file that the user may not write is not replaced either.
class SystemFiles : public Files {
 public:
  [[nodiscard]] std::filesystem::path ProgramFolder() override;
  [[nodiscard]] std::filesystem::path WorkingFolder() override;
  // Linux: XDG_DOCUMENTS_DIR where it is set, else "Documents" in the home folder where there is
  // one, else the home folder. Windows: the user's documents, or the profile where there are none.
  [[nodiscard]] std::filesystem::path DocumentsFolder() override;
  [[nodiscard]] bool CanWriteIn(const std::filesystem::path& folder) override;
  [[nodiscard]] std::optional<std::string> Read(const std::filesystem::path& file,
                                                std::size_t limit) override;
  [[nodiscard]] std::vector<std::string> List(const std::filesystem::path& folder) override;

  // The content is on the disk before it takes the earlier file's place. On Linux a new file gets
  // the user's default permissions, and those of an earlier one are kept.
  void ReplaceWhole(const std::filesystem::path& file, std::string_view content) override;
  void MakeFolder(const std::filesystem::path& folder) override;
  void Remove(const std::filesystem::path& file) override;
};

}  // namespace kestrel
