// Arbitrary settings in the place of the system's list of parallel ports.
// SPDX-License-Identifier: MIT
// Arbitrary settings in the place of those in which the system tells its parallel ports: one a
// line, the name of its folder and a blank before its base address.

#include "platform/linux/parallel_ports.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>
#include <string>

#include "input.h"
#include "require.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostSettings = 6;

bool IsFolderName(std::string_view name) {
  return !name.empty() && name.size() < 100 && name != "." && name != ".." &&
         name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

// The number that the first word is; 0 where it is none.
std::uint32_t FirstNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  text = text.substr(0, text.find_first_of(" \t\n\v\f\r"));
  if (text.find_first_not_of("0123456789") != std::string_view::npos) return 0;
  std::uint32_t number = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
  return parsed.ec == std::errc{} ? number : 0;
}

class Settings {
 public:
  void Write(Input& input) {
    while (!input.Empty() && bases_.size() < kMostSettings) {
      std::string_view line = input.Until('\n');
      const std::string name(line.substr(0, line.find(' ')));
      if (!IsFolderName(name) || bases_.contains(name)) continue;
      line.remove_prefix(std::min(name.size() + 1, line.size()));
      fs::create_directory(folders_.settings / name);
      std::ofstream(folders_.settings / name / "base-addr", std::ios::binary) << line;
      bases_[name] = line;
    }
  }

  void Check() const {
    int last = -1;
    const auto ports = ParallelPorts(folders_);
    Require(ports.size() <= bases_.size(), "a port a setting at most");
    for (const SystemParallelPort& port : ports) {
      const std::string name = port.device.filename().string();
      Require(port.number >= 0 && port.number >= last, "ports are numbered, and in order");
      Require(port.device.parent_path() == folders_.devices, "a device is one of the system's");
      Require(bases_.contains(name), "a port has settings");
      Require(port.base == FirstNumber(bases_.at(name)), "and its base is the first word there");
      last = port.number;
    }
    for (const auto& [name, base] : bases_) {
      const auto isIt = [&name = name](const auto& port) { return port.device.filename() == name; };
      const bool wanted =
          name.size() == 8 && name.starts_with("parport") && name[7] >= '0' && name[7] <= '9';
      Require(!wanted || std::any_of(ports.begin(), ports.end(), isIt), "every port is found");
    }
  }

  void Remove() {
    for (const auto& [name, base] : bases_) fs::remove_all(folders_.settings / name);
    bases_.clear();
  }

 private:
  TemporaryFolder folder_;
  ParallelPortFolders folders_{.devices = "/dev", .settings = folder_.path()};
  std::map<std::string, std::string> bases_;
};

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, 600);
  static kestrel::Settings settings;
  kestrel::Input input(data, size);
  settings.Write(input);
  settings.Check();
  settings.Remove();
  return 0;
}
