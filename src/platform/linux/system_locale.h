// The regional settings of Linux, from the environment.
// SPDX-License-Identifier: MIT
#pragma once

#include <clocale>
#include <string>

#include "seams/locale.h"

namespace kestrel {

// The regional settings that the environment names (LC_ALL, LC_NUMERIC, LC_TIME, LANG) when it is
// made; plain English ones where the named locale is not installed. The process's own locale stays
// as it is.
class SystemLocale : public Locale {
 public:
  SystemLocale();
  ~SystemLocale() override;
  SystemLocale(const SystemLocale&) = delete;
  SystemLocale& operator=(const SystemLocale&) = delete;

  [[nodiscard]] char DecimalMark() override;
  [[nodiscard]] std::string ShortDate() override;
  [[nodiscard]] std::string Time() override;

 private:
  [[nodiscard]] std::string NowAs(const char* format) const;

  locale_t locale_;
};

}  // namespace kestrel
