// Asking the C library for the formats of the locale that the environment names.
// SPDX-License-Identifier: MIT
#include "platform/linux/system_locale.h"

#include <langinfo.h>

#include <array>
#include <cstring>
#include <ctime>

namespace kestrel {
namespace {

// Each category by itself: one that is not installed does not take the others with it.
locale_t UserLocale() {
  locale_t found = newlocale(LC_ALL_MASK, "C", locale_t{});
  for (const int category : {LC_CTYPE_MASK, LC_NUMERIC_MASK, LC_TIME_MASK}) {
    const locale_t extended = newlocale(category, "", found);
    if (extended != locale_t{}) found = extended;
  }
  return found;
}

}  // namespace

SystemLocale::SystemLocale() : locale_(UserLocale()) {}

SystemLocale::~SystemLocale() {
  freelocale(locale_);
}

char SystemLocale::DecimalMark() {
  const char* mark = nl_langinfo_l(RADIXCHAR, locale_);
  return std::strlen(mark) == 1 ? *mark : '.';
}

std::string SystemLocale::ShortDate() {
  return NowAs("%x");
}

std::string SystemLocale::Time() {
  return NowAs("%X");
}

std::string SystemLocale::NowAs(const char* format) const {
  const std::time_t now = std::time(nullptr);
  tm local{};
  localtime_r(&now, &local);
  std::array<char, 256> text{};
  return {text.data(), strftime_l(text.data(), text.size(), format, &local, locale_)};
}

}  // namespace kestrel
