// How lines are cut into columns, and columns are read as FORTRAN would.
// SPDX-License-Identifier: MIT
#include "exchange/uff/cursor.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "exchange/texts.h"
#include "exchange/uff/layout.h"

namespace kestrel::exchange {
namespace {

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string_view WithoutPlus(std::string_view text) {
  return text.starts_with('+') ? text.substr(1) : text;
}

// "1.5E+02", "1.5D+02", and "1.5+102" where an exponent has left no room for its letter.
std::optional<double> FortranNumber(std::string_view text) {
  std::string digits(WithoutPlus(text));
  std::ranges::replace(digits, 'D', 'E');
  std::ranges::replace(digits, 'd', 'E');
  const std::size_t sign = digits.find_last_of("+-");
  if (sign != std::string::npos && sign > 0 && digits.find_first_of("eE") == std::string::npos) {
    digits.insert(sign, "E");
  }
  double value = 0;
  const char* end = digits.data() + digits.size();
  const auto parsed = std::from_chars(digits.data(), end, value);
  const bool whole = parsed.ec == std::errc() && parsed.ptr == end;
  return whole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

}  // namespace

std::string_view UffCursor::Line() {
  const std::size_t end = rest_.find('\n');
  if (end == std::string_view::npos) {
    StopAtLine(number_ + 1, "the file ends in the middle of a dataset; it may have been cut off.");
  }
  std::string_view line = rest_.substr(0, end);
  rest_.remove_prefix(end + 1);
  ++number_;
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool UffCursor::AtMark() const {
  return Trimmed(rest_.substr(0, rest_.find_first_of("\r\n"))) == "-1";
}

void UffCursor::TakeMark(const char* ofWhat) {
  const std::string_view line = rest_.substr(0, rest_.find_first_of("\r\n"));
  if (!AtMark()) {
    StopAtLine(number_ + 1, std::string(rest_.empty() ? "the file ends here; " : "") + ofWhat +
                                " should stand here, \"" + kUffMark + "\"" +
                                (rest_.empty() ? "." : ", and not " + Shown(line) + "."));
  }
  rest_.remove_prefix(line.size());
  ++number_;
  SkipLineEnd();
}

std::string_view UffCursor::Bytes(std::size_t count) {
  const std::string_view bytes = rest_.substr(0, count);
  rest_.remove_prefix(bytes.size());
  number_ += static_cast<std::size_t>(std::ranges::count(bytes, '\n'));
  return bytes;
}

void UffCursor::SkipLineEnd() {
  if (rest_.starts_with('\r')) rest_.remove_prefix(1);
  if (rest_.starts_with('\n')) rest_.remove_prefix(1);
}

std::string_view UffColumns::Text(std::size_t columns) {
  const std::string_view text = line_.substr(0, columns);
  line_.remove_prefix(text.size());
  return Trimmed(text);
}

std::int64_t UffColumns::Whole(std::size_t columns, const char* what) {
  const std::string_view text = Text(columns);
  if (text.empty()) return 0;
  const std::string_view digits = WithoutPlus(text);
  std::int64_t value = 0;
  const char* end = digits.data() + digits.size();
  const auto parsed = std::from_chars(digits.data(), end, value);
  if (parsed.ec != std::errc() || parsed.ptr != end) {
    cursor_.Stop(std::string(what) + " is " + Shown(text) + ", which is not a whole number");
  }
  return value;
}

double UffColumns::Real(std::size_t columns, const char* what) {
  if (Trimmed(line_.substr(0, columns)).empty()) {
    Text(columns);
    return 0;
  }
  return Value(columns, what);
}

double UffColumns::Value(std::size_t columns, const char* what) {
  const std::string_view text = Text(columns);
  const auto value = FortranNumber(text);
  if (!value) cursor_.Stop(std::string(what) + " is " + Shown(text) + ", which is not a number");
  return *value;
}

bool UffColumns::AtEnd() const {
  return Trimmed(line_).empty();
}

}  // namespace kestrel::exchange
