// The system's settings of its parallel ports, in a folder of the test's.
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/parallel_ports.h"
#include "support/temporary_folder.h"

namespace kestrel {

// The system's settings of its parallel ports, as its driver writes them.
class ParportSettings {
 public:
  ParportSettings() {
    std::filesystem::create_directories(Folder() / "default");
    std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
  }

  void Add(int number, unsigned base) {
    const std::string name = "parport" + std::to_string(number);
    std::filesystem::create_directories(Folder() / name);
    folder_.Write("parport/" + name + "/base-addr",
                  std::to_string(base) + "\t" + std::to_string(base == 0 ? 0 : base + 1024) + "\n");
  }

  [[nodiscard]] std::filesystem::path Folder() const { return folder_.path() / "parport"; }

 private:
  TemporaryFolder folder_;
};

}  // namespace kestrel
