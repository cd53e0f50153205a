// The regional settings of Windows.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/locale.h"

namespace kestrel {

// The user's regional settings.
class SystemLocale : public Locale {
 public:
  [[nodiscard]] char DecimalMark() override;
  [[nodiscard]] std::string ShortDate() override;
  [[nodiscard]] std::string Time() override;
};

}  // namespace kestrel
