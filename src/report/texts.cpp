// Control characters and lists in words.
// SPDX-License-Identifier: MIT
#include "report/texts.h"

#include <algorithm>

#include "record/utc_time.h"

namespace kestrel::report {
namespace {

bool IsControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code < ' ' || code == 0x7F;
}

}  // namespace

std::string MomentText(std::chrono::system_clock::time_point moment) {
  std::string text = UtcText(moment);  // "2026-03-14T08:26:53.000Z"
  const std::size_t point = text.rfind('.');
  if (point != std::string::npos) text.resize(point);
  std::ranges::replace(text, 'T', ' ');
  return text + " UTC";
}

std::string OneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(line, IsControl, ' ');
  const std::size_t first = line.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return line.substr(first, line.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> ParagraphsOf(std::string_view text) {
  std::vector<std::string> paragraphs;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (std::string line = OneLine(text.substr(0, end)); !line.empty()) {
      paragraphs.push_back(std::move(line));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return paragraphs;
}

std::string Listed(const std::vector<std::string>& texts) {
  std::string list;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) list += i + 1 == texts.size() ? " and " : ", ";
    list += texts[i];
  }
  return list;
}

}  // namespace kestrel::report
