// Finding the files of a series by their numbers.
// SPDX-License-Identifier: MIT
#include "logging/log_files.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>

#include "logging/data_log.h"
#include "logging/data_log_settings.h"
#include "logging/data_log_text.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

std::string NameInUse() {
  return IsBlank(DataLogName) ? kDefaultLogName : DataLogName;
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
  return FolderOfUserFiles(files) / PathOf(NameInUse() + "_" + std::to_string(DataLogIndex) +
                                           FormatFor(locale.DecimalMark()).extension);
}

std::vector<int> LogNumbersInTheWay(Files& files, Locale& locale) {
  const std::string start = NameInUse() + "_";
  const std::string end = FormatFor(locale.DecimalMark()).extension;
  std::vector<int> numbers;
  for (const std::string& name : files.List(FolderOfUserFiles(files))) {
    const int number = NumberOf(name, start, end);
    if (number >= DataLogIndex) numbers.push_back(number);
  }
  std::ranges::sort(numbers);
  return numbers;
}

int LogFilesInTheWay(Files& files, Locale& locale) {
  return static_cast<int>(LogNumbersInTheWay(files, locale).size());
}

std::optional<std::int16_t> NextFreeLogNumber(Files& files, Locale& locale) {
  const std::vector<int> numbers = LogNumbersInTheWay(files, locale);
  if (numbers.empty()) return DataLogIndex;
  if (numbers.back() >= std::numeric_limits<std::int16_t>::max()) return std::nullopt;
  return static_cast<std::int16_t>(numbers.back() + 1);
}

std::string NamesOfFilesInTheWay(Files& files, Locale& locale) {
  const std::vector<int> numbers = LogNumbersInTheWay(files, locale);
  if (numbers.empty()) return "";
  const auto name = [&](int number) {
    return NameInUse() + "_" + std::to_string(number) + FormatFor(locale.DecimalMark()).extension;
  };
  if (numbers.size() == 1) return name(numbers.front());
  return name(numbers.front()) + " to " + name(numbers.back());
}

std::string WarningOfFilesInTheWay(Files& files, Locale& locale) {
  const int count = LogFilesInTheWay(files, locale);
  if (count == 0) return "";
  return "Earlier files with this or a higher number, which new ones will replace: " +
         std::to_string(count) + ".";
}

}  // namespace kestrel
