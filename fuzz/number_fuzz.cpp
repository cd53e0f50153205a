// Arbitrary texts where numbers are typed, and arbitrary numbers formatted.
// SPDX-License-Identifier: MIT
// Arbitrary texts where a number, a word, frames or a file name is typed, and arbitrary numbers
// formatted.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>

#include "app/file_name.h"
#include "input.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "numeric/runtime_error.h"
#include "require.h"
#include "transport/spi_frames.h"
#include "transport/typed_word.h"

namespace kestrel {
namespace {

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// What the system's own reader makes of a whole text of digits, marks and signs.
std::optional<double> SystemNumber(const std::string& text) {
  const std::string trimmed = Trimmed(text);
  if (trimmed.empty() || trimmed.find_first_not_of("0123456789+-.eE") != std::string::npos) {
    return std::nullopt;
  }
  char* end = nullptr;
  const double value = std::strtod(trimmed.c_str(), &end);
  if (end != trimmed.c_str() + trimmed.size()) return std::nullopt;
  return value;
}

void CheckNumber(const std::string& text) {
  const std::optional<double> whole = WholeTextNumber(text);
  const double leading = LeadingNumber(text);
  Require(!std::isnan(leading), "a leading number is a number");
  Require(whole == SystemNumber(text), "a whole text reads as it does elsewhere");
  if (!whole) return;
  Require(leading == *whole, "a whole text leads with its number");
  Require(LeadingNumber(text + " g") == *whole, "a unit after it has no say");
  Require(WholeTextNumber(" \t" + text + "\r\n") == whole, "nor have blanks");
}

bool IsHexadecimal(const std::string& text, std::size_t most) {
  return !text.empty() && text.size() <= most &&
         text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

void CheckWord(const std::string& text) {
  const std::string trimmed = Trimmed(text);
  const std::optional<std::uint32_t> number = HexadecimalNumber(text);
  Require(number.has_value() == IsHexadecimal(trimmed, 8), "digits are a number, all else is none");
  if (number) {
    Require(*number == std::strtoul(trimmed.c_str(), nullptr, 16), "the digits' own");
    const std::string shown = Hex(static_cast<std::int32_t>(*number));
    Require(HexadecimalNumber(shown) == number, "what is shown is read");
  }
  const std::optional<std::uint16_t> word = HexadecimalWord(text);
  const TypedWord typed = ReadTypedWord(text);
  Require(typed.fault.empty() || typed.value == 0, "a fault comes without a value");
  Require(typed.fault.size() < 120, "a fault is short");
  Require(!word || trimmed.starts_with('&') || (typed.fault.empty() && typed.value == *word),
          "all word fields agree");
  if (!typed.fault.empty()) return;
  Require(!IsBlank(text), "a blank text is not a word");
  Require(ReadTypedWord("0x" + PaddedHex(typed.value, 4)).value == typed.value,
          "a word that is shown is read");
}

void CheckFrames(Input input) {
  FrameTexts texts;
  int last = 0;
  for (int number = 1; number <= kFramesPerTransfer; ++number) {
    std::string& text = texts.at(static_cast<std::size_t>(number - 1));
    text = input.Until('\n');
    if (!IsBlank(text)) last = number;
  }
  const TypedFrames typed = ReadTypedFrames(texts);
  const bool faulty = typed.faultyFrame != 0;
  Require(faulty == !typed.fault.empty() && faulty == typed.frames.empty(), "frames or a fault");
  if (faulty) {
    Require(typed.faultyFrame >= 1 && typed.faultyFrame <= std::max(last, 1), "of a frame typed");
    return;
  }
  Require(typed.frames.size() == static_cast<std::size_t>(last), "every frame that was typed");
  for (std::size_t i = 0; i < typed.frames.size(); ++i) {
    Require(typed.frames[i] == ReadTypedWord(texts.at(i)).value, "as it was typed");
    Require(typed.frames[i] <= 0xFEFF, "none that cannot be sent");
  }
}

void CheckFileName(const std::string& name) {
  const std::string problem = FileNameProblem(name);
  Require(problem.size() < 100, "a problem is short");
  if (!problem.empty()) return;
  for (const char c : name) {
    Require(static_cast<unsigned char>(c) >= ' ', "a good name has no control characters");
    Require(c != '/' && c != '\\' && c != ':', "nor any that lead elsewhere");
  }
  const std::filesystem::path file = std::filesystem::path("/data") / (name + "_32767.csv");
  Require(file.parent_path() == "/data", "a file of this name lies in its folder");
  Require(file.filename().string().size() <= 255, "and its name is short enough");
  Require(FileNameProblem(name + "_1.csv").empty() || name.size() > 230, "with an extension too");
}

template <typename Integer>
void CheckConversion(double value, Integer (*convert)(double)) {
  const double whole = std::nearbyint(value);
  const bool fits =
      whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max();
  try {
    Require(static_cast<double>(convert(value)) == whole && fits, "a conversion rounds");
  } catch (const RuntimeError&) {
    Require(!fits, "only what does not fit overflows");
  }
}

void CheckFormat(double value, int decimals) {
  CheckConversion(value, ToByte);
  CheckConversion(value, ToInteger);
  CheckConversion(value, ToLong);
  const std::string general = GeneralNumber(value);
  const std::string fixed = FixedNumber(value, decimals);
  if (!std::isfinite(value)) return;
  const double largest = std::numeric_limits<double>::max();
  const auto reread = [](const std::string& text) {
    const std::optional<double> number = WholeTextNumber(text);
    Require(number.has_value(), "a number that is shown is read");
    return *number;
  };
  const double error = 1e-14 * std::abs(value) + std::numeric_limits<double>::denorm_min();
  Require(std::abs(reread(general)) > largest || std::abs(reread(general) - value) <= error,
          "general numbers keep 15 digits");
  const double step = std::pow(10.0, -decimals);
  Require(std::abs(reread(fixed)) > largest ||
              std::abs(reread(fixed) - value) <= 0.5 * step * (1 + 1e-9) + error,
          "fixed numbers are rounded to their last decimal");
  const std::size_t mark = fixed.find('.');
  Require(decimals == 0 ? mark == std::string::npos
                        : mark == fixed.size() - static_cast<std::size_t>(decimals) - 1,
          "and have all their decimals");
  Require(fixed.find_first_not_of("-0.") != std::string::npos || !fixed.starts_with('-'),
          "zero carries no sign");
  const std::string grouped = GroupedWholeNumber(value);
  std::string plain = grouped;
  std::erase(plain, ',');
  Require(plain == FixedNumber(value, 0), "groups are the whole number's");
  const std::string four = OneToFourDecimals(value);
  Require(reread(four) == reread(FixedNumber(value, 4)), "zeros at the end count nothing");
}

double NumberOf(Input& input) {
  std::uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = bits << 8U | input.Byte();
  return std::bit_cast<double>(bits);
}

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, 2000);
  const std::string text(reinterpret_cast<const char*>(data), size);
  kestrel::CheckNumber(text);
  kestrel::CheckWord(text);
  kestrel::CheckFrames(kestrel::Input(data, size));
  kestrel::CheckFileName(text);
  kestrel::Input input(data, size);
  const double value = kestrel::NumberOf(input);
  kestrel::CheckFormat(value, input.Between(0, 15));
  kestrel::CheckFormat(kestrel::LeadingNumber(text), 3);
  return 0;
}
