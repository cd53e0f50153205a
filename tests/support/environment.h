// Environment variables set for one test and put back.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace kestrel {

// Environment variables set for one test and put back after it.
class Environment {
 public:
  Environment() = default;
  ~Environment() {
    for (const auto& [name, value] : earlier_) Put(name, value);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  // No value removes the variable.
  void Set(const std::string& name, const std::optional<std::string>& value) {
    const char* now = std::getenv(name.c_str());
    earlier_.emplace(name, now == nullptr ? std::nullopt : std::optional<std::string>(now));
    Put(name, value);
  }

 private:
  static void Put(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
      setenv(name.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name.c_str());
    }
  }

  std::map<std::string, std::optional<std::string>> earlier_;
};

}  // namespace kestrel
