// The rules that several systems make for the name of a file.
// SPDX-License-Identifier: MIT
#include "app/file_name.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace kestrel {
namespace {

// Room for "_32767.csv" within the 255 bytes of a name.
constexpr std::size_t kLongestName = 240;

constexpr std::string_view kForbidden = "/\\:*?\"<>|";

// Device names of one of the systems, reserved with any extension.
constexpr std::array<std::string_view, 4> kReserved{"CON", "PRN", "AUX", "NUL"};

bool IsReserved(const std::string& name) {
  std::string upper = name.substr(0, name.find('.'));
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  if (std::find(kReserved.begin(), kReserved.end(), upper) != kReserved.end()) return true;
  const bool numbered = upper.starts_with("COM") || upper.starts_with("LPT");
  return numbered && upper.size() == 4 && upper[3] >= '1' && upper[3] <= '9';
}

bool IsForbidden(char c) {
  return static_cast<unsigned char>(c) < 0x20 || kForbidden.find(c) != std::string_view::npos;
}

}  // namespace

std::string FileNameProblem(const std::string& name) {
  const auto bad = std::find_if(name.begin(), name.end(), IsForbidden);
  if (bad != name.end()) {
    const bool shown = static_cast<unsigned char>(*bad) >= 0x20;
    return shown ? std::string("the character ") + *bad + " cannot stand in a file name"
                 : std::string("a control character cannot stand in a file name");
  }
  if (name.size() > kLongestName) {
    return "a name may have " + std::to_string(kLongestName) + " bytes, this one has " +
           std::to_string(name.size());
  }
  if (IsReserved(name)) return "this name is reserved by the system";
  return {};
}

}  // namespace kestrel
