// An alarm file written, and read line by line with the first fault named.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_file.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <optional>
#include <vector>

#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

constexpr std::string_view kPreface = "AlarmSpectrum_";
constexpr std::string_view kExtension = ".csv";
constexpr std::string_view kHeader =
    "Sample Rate Option,  Band,  F-Low, F-High,  Alm1 X,  ALM1 Y,  ALM1 Z,  ALM2 X,  ALM2 Y,  "
    "ALM2 Z";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\"";

constexpr std::size_t kColumns = 10;
constexpr std::int32_t kLastOptionSlot = 4;
constexpr std::int32_t kLastBandSlot = 7;

// Of the option, the band, then the band's fields.
std::string ColumnTitle(std::size_t column) {
  if (column == 0) return "option";
  return column == 1 ? "band" : kBandFieldNames[column - 2];
}

// Without the blanks and quotes that spreadsheets put around.
std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::vector<std::string_view> Split(std::string_view line, char separator) {
  std::vector<std::string_view> fields;
  std::size_t start = 0;
  for (std::size_t end = line.find(separator); end != std::string_view::npos;
       end = line.find(separator, start)) {
    fields.push_back(Trimmed(line.substr(start, end - start)));
    start = end + 1;
  }
  fields.push_back(Trimmed(line.substr(start)));
  return fields;
}

// Lines one after another, whichever way they are ended.
class LineReader {
 public:
  explicit LineReader(std::string_view content) : rest_(content) {
    if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
  }

  bool Next(std::string_view& line) {
    if (rest_.empty()) return false;
    const std::size_t end = std::min(rest_.find_first_of(kLineEnd), rest_.size());
    line = rest_.substr(0, end);
    rest_.remove_prefix(end);
    if (rest_.starts_with(kLineEnd)) {
      rest_.remove_prefix(kLineEnd.size());
    } else if (!rest_.empty()) {
      rest_.remove_prefix(1);
    }
    ++number_;
    return true;
  }

  // Of the line last taken; 1 is the first.
  [[nodiscard]] int Number() const { return number_; }

 private:
  std::string_view rest_;
  int number_ = 0;
};

[[noreturn]] void Refuse(int line, const std::string& text) {
  throw RuntimeError("line " + std::to_string(line) + ": " + text);
}

// Text of a file as a message can show it: one short line.
std::string Excerpt(std::string_view text) {
  constexpr std::size_t kMost = 80;
  const bool cut = text.size() > kMost;
  if (cut) {
    std::size_t end = kMost;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) --end;
    text = text.substr(0, end);
  }
  std::string shown(text);
  std::replace_if(
      shown.begin(), shown.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
  return cut ? shown + "..." : shown;
}

bool IsColumnTitle(std::string_view text, std::string_view lettersOfIt) {
  std::string letters;
  for (const char c : text) {
    if (kBlanks.find(c) != std::string_view::npos) continue;
    letters += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return letters == lettersOfIt;
}

// What the header's columns are separated by; spreadsheets of other languages do not use commas.
std::optional<char> SeparatorOf(std::string_view header) {
  for (const char separator : {',', ';', '\t'}) {
    const std::vector<std::string_view> fields = Split(header, separator);
    if (fields.size() == kColumns && IsColumnTitle(fields.front(), "samplerateoption")) {
      return separator;
    }
  }
  return std::nullopt;
}

// The integer of a field; a number with decimals is rounded half to even.
std::int32_t FieldValue(std::string_view text, std::size_t column, int line) {
  const auto describe = [&] { return ColumnTitle(column) + " = "; };
  const std::optional<double> number = WholeTextNumber(text);
  if (!number) Refuse(line, describe() + "\"" + Excerpt(text) + "\" is not a number");
  try {
    return ToLong(*number);
  } catch (const RuntimeError& error) {
    Refuse(line, describe() + Excerpt(text) + ". " + error.what());
  }
}

// Spreadsheets write an empty row as its separators alone.
bool IsEmpty(std::string_view line, char separator) {
  return std::all_of(line.begin(), line.end(), [separator](char c) {
    return c == separator || kBlanks.find(c) != std::string_view::npos;
  });
}

void CheckSlot(std::int32_t value, std::int32_t last, std::size_t column, int line) {
  if (value >= 0 && value <= last) return;
  Refuse(line, ColumnTitle(column) + " = " + std::to_string(value) + ". " + kSubscriptOutOfRange);
}

void TakeLine(std::string_view text, char separator, int line, BandTable& table) {
  const std::vector<std::string_view> fields = Split(text, separator);
  if (fields.size() != kColumns) {
    Refuse(line,
           std::to_string(fields.size()) + " values instead of 10 in \"" + Excerpt(text) + "\"");
  }
  std::array<std::int32_t, kColumns> values{};
  for (std::size_t i = 0; i < kColumns; ++i) values[i] = FieldValue(fields[i], i, line);
  CheckSlot(values[0], kLastOptionSlot, 0, line);
  CheckSlot(values[1], kLastBandSlot, 1, line);
  for (std::size_t i = 0; i < kBandFields.size(); ++i) {
    table(kBandFields[i], values[1], values[0]) = values[i + 2];
  }
}

}  // namespace

bool IsAlarmFileName(std::string_view name) {
  return name.size() >= kPreface.size() + kExtension.size() && name.starts_with(kPreface) &&
         name.ends_with(kExtension);
}

std::string AlarmFileText(const BandTable& table) {
  std::string text{kHeader};
  text += kLineEnd;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      text += std::to_string(option) + "," + std::to_string(band);
      for (const int field : kBandFields) text += "," + std::to_string(table(field, band, option));
      text += kLineEnd;
    }
  }
  return text;
}

int ReadAlarmFileText(std::string_view content, BandTable& table) {
  LineReader reader(content);
  std::string_view line;
  const std::optional<char> separator =
      reader.Next(line) ? SeparatorOf(line) : std::optional<char>{};
  if (!separator) {
    Refuse(1, "not an alarm file: it begins with \"" + Excerpt(line) + "\"");
  }
  int taken = 0;
  while (reader.Next(line)) {
    if (IsEmpty(line, *separator)) continue;
    TakeLine(line, *separator, reader.Number(), table);
    ++taken;
  }
  return taken;
}

}  // namespace kestrel
