// The seam to files and to the places they are kept in.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

// Files and the places they are kept in.
class Files {
 public:
  virtual ~Files() = default;

  [[nodiscard]] virtual std::filesystem::path ProgramFolder() = 0;
  [[nodiscard]] virtual std::filesystem::path WorkingFolder() = 0;
  // The user's own folder for documents.
  [[nodiscard]] virtual std::filesystem::path DocumentsFolder() = 0;

  // Whether the user may make files in a folder.
  [[nodiscard]] virtual bool CanWriteIn(const std::filesystem::path& folder) = 0;

  // At most `limit` bytes from the start of a regular file; nothing when it cannot be read.
  [[nodiscard]] virtual std::optional<std::string> Read(const std::filesystem::path& file,
                                                        std::size_t limit) = 0;

  // Names of the regular files in a folder, in the order the system lists them; none for a folder
  // that cannot be read.
  [[nodiscard]] virtual std::vector<std::string> List(const std::filesystem::path& folder) = 0;

  // Puts a file with this content in place, whole or not at all, whatever stood there before.
  // Throws RuntimeError with path and reason when it cannot; an earlier file is then untouched.
  virtual void ReplaceWhole(const std::filesystem::path& file, std::string_view content) = 0;

  // Makes a folder with those above it, where they are missing. Throws RuntimeError with path and
  // reason.
  virtual void MakeFolder(const std::filesystem::path& folder) = 0;

  // Removes a file; one that is gone already is no fault. Throws RuntimeError with path and reason.
  virtual void Remove(const std::filesystem::path& file) = 0;
};

// Where the files that the user works with are kept: beside the program, or with the user's
// documents where the program's own folder cannot be written.
[[nodiscard]] inline std::filesystem::path FolderOfUserFiles(Files& files) {
  const std::filesystem::path program = files.ProgramFolder();
  return files.CanWriteIn(program) ? program : files.DocumentsFolder();
}

}  // namespace kestrel
