// One program a device: locks that all programs of this machine share.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/linux/file_descriptor.h"

namespace kestrel {

// A lock is a file that its holder keeps locked and that tells who that is. The system unlocks it
// when its holder ends, however that was. Where no file can be made nothing is locked.
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
  [[nodiscard]] FileDescriptor Open(const std::string& device) const;

  std::vector<std::filesystem::path> folders_;
  std::function<std::string()> user_;
  std::map<std::string, FileDescriptor> held_;
};

// KESTREL_LOCKS where it is set; else the folder that all users share, the user's own, /tmp.
[[nodiscard]] std::vector<std::filesystem::path> LockFolders();

}  // namespace kestrel
