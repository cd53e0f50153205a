// Asking Windows for the user's formats.
// SPDX-License-Identifier: MIT
#include "platform/windows/system_locale.h"

#include <windows.h>

#include <array>

namespace kestrel {
namespace {

using Text = std::array<char, 256>;

// `length` counts the zero at the end; 0 when there is no text.
std::string Taken(const Text& text, int length) {
  return length > 0 ? std::string(text.data()) : std::string();
}

}  // namespace

char SystemLocale::DecimalMark() {
  Text text{};
  const int length = GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data(),
                                    static_cast<int>(text.size()));
  const std::string mark = Taken(text, length);
  return mark.size() == 1 ? mark.front() : '.';
}

std::string SystemLocale::ShortDate() {
  Text text{};
  return Taken(text, GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr,
                                    text.data(), static_cast<int>(text.size())));
}

std::string SystemLocale::Time() {
  Text text{};
  return Taken(text, GetTimeFormatA(LOCALE_USER_DEFAULT, 0, nullptr, nullptr, text.data(),
                                    static_cast<int>(text.size())));
}

}  // namespace kestrel
