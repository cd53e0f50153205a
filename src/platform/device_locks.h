// One program a device: locks that all programs of this machine share.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kestrel {

// A lock is a file that its holder keeps to itself and that tells who that is. The system gives it
// free when its holder ends, however that was. Where no file can be made nothing is locked.
class DeviceLocks {
 public:
  // Folders in the order in which they are tried; all programs must try the same. `user` tells
  // others who holds what is taken: "kestrel-cli".
  DeviceLocks(std::vector<std::filesystem::path> folders, std::function<std::string()> user)
      : folders_(std::move(folders)), user_(std::move(user)) {}

  // False where another program has it. A device that is taken already stays taken.
  [[nodiscard]] bool Take(const std::string& device);
  void Release(const std::string& device) { held_.erase(device); }

  // Who has a device that could not be taken: "kestrel-cli, bench Hall 3 (process 4711)".
  [[nodiscard]] std::string Holder(const std::string& device) const;

 private:
  std::vector<std::filesystem::path> folders_;
  std::function<std::string()> user_;
  std::map<std::string, std::shared_ptr<void>> held_;  // the system's open files
};

// KESTREL_LOCKS where it is set; else the folder that all users share, then the user's own.
[[nodiscard]] std::vector<std::filesystem::path> LockFolders();

// The name of the file; what not every system takes for a name becomes an underline.
[[nodiscard]] std::string LockFileOf(std::string device);
// What a lock file tells of its holder, fit to be shown: "another program" where it tells nothing.
[[nodiscard]] std::string HolderOf(std::string text);

}  // namespace kestrel
