// The seam to the user's regional settings.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel {

// The user's regional settings and the current date and time in them.
class Locale {
 public:
  virtual ~Locale() = default;
  [[nodiscard]] virtual char DecimalMark() = 0;
  [[nodiscard]] virtual std::string ShortDate() = 0;
  [[nodiscard]] virtual std::string Time() = 0;
};

}  // namespace kestrel
