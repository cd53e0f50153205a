// What the language's own library does with files, the same on every system.
// SPDX-License-Identifier: MIT
#include "platform/system_files.h"

#include <system_error>

#include "numeric/runtime_error.h"

namespace kestrel {

namespace fs = std::filesystem;

fs::path SystemFiles::WorkingFolder() {
  std::error_code error;
  const fs::path folder = fs::current_path(error);
  return error ? fs::path(".") : folder;
}

std::vector<std::string> SystemFiles::List(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unknown;
    if (entry->is_regular_file(unknown)) names.push_back(entry->path().filename().string());
  }
  return names;
}

void SystemFiles::MakeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw RuntimeError(folder.string() + ": " + error.message());
}

void SystemFiles::Remove(const fs::path& file) {
  std::error_code error;
  fs::remove(file, error);
  if (error) throw RuntimeError(file.string() + ": " + error.message());
}

}  // namespace kestrel
