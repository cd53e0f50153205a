// The search for adapter boards as the windows list it.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "transport/usb_adapter.h"

namespace kestrel {

// One adapter record as the windows list it; all empty for a name without a board.
struct AdapterRow {
  std::string name;
  std::string boardType;
  std::string string1;
  std::string string2;
  std::string firmware;  // one decimal
  std::string usbVersion;
};

[[nodiscard]] AdapterRow RowOf(const AdapterRecord& record);

// What the last search found, why there is no board where there is none, and what to do about it:
// one line a finding.
[[nodiscard]] std::string ExplainSearch();

}  // namespace kestrel
