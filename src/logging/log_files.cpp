// Finding the files of a series by their numbers.
// SPDX-License-Identifier: MIT
#include "logging/log_files.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "logging/data_log.h"
#include "logging/data_log_settings.h"
#include "logging/data_log_text.h"

namespace kestrel {
namespace {

std::string NameInUse() {
  return DataLogName.empty() ? kDefaultLogName : DataLogName;
}

// The number of a file of the series "start1end", "start2end", ...; 0 for any other file.
int NumberOf(std::string_view file, std::string_view start, std::string_view end) {
  if (!file.starts_with(start) || !file.ends_with(end)) return 0;
  if (file.size() < start.size() + end.size()) return 0;
  const std::string_view digits =
      file.substr(start.size(), file.size() - start.size() - end.size());
  int number = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool whole = parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
  return whole && std::to_string(number) == digits ? number : 0;
}

}  // namespace

std::filesystem::path NextLogFile(Files& files, Locale& locale) {
  return FolderOfUserFiles(files) / (NameInUse() + "_" + std::to_string(DataLogIndex) +
                                     FormatFor(locale.DecimalMark()).extension);
}

int LogFilesInTheWay(Files& files, Locale& locale) {
  const std::string start = NameInUse() + "_";
  const std::string end = FormatFor(locale.DecimalMark()).extension;
  const auto names = files.List(FolderOfUserFiles(files));
  return static_cast<int>(std::ranges::count_if(
      names, [&](const std::string& name) { return NumberOf(name, start, end) >= DataLogIndex; }));
}

std::string WarningOfFilesInTheWay(Files& files, Locale& locale) {
  const int count = LogFilesInTheWay(files, locale);
  if (count == 0) return "";
  return "Earlier files with this or a higher number, which new ones will replace: " +
         std::to_string(count) + ".";
}

}  // namespace kestrel
