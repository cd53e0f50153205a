// The register log written, with title and moment.
// SPDX-License-Identifier: MIT
#include "device/register_log.h"

#include "app/program_state.h"

namespace kestrel {
namespace {

constexpr const char* kLineEnd = "\r\n";

}  // namespace

std::string RegisterListTitle(Locale& locale) {
  return std::string(kApplicationTitle) + kLineEnd + locale.ShortDate() + "  " + locale.Time() +
         kLineEnd;
}

std::filesystem::path WriteRegisterLog(Files& files, Locale& locale, const std::string& list) {
  std::filesystem::path file = FolderOfUserFiles(files) / kRegisterLogName;
  files.ReplaceWhole(
      file, std::string(kRegisterLogName) + kLineEnd + RegisterListTitle(locale) + kLineEnd + list);
  return file;
}

}  // namespace kestrel
