// What this program's own universal files tell beside the format: settings, conditions, the moment.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "exchange/imported.h"
#include "exchange/uff/dataset.h"

namespace kestrel::exchange {

// Takes time, settings and conditions out of the ID lines; of files of others only the time's text.
void TakeOwnLines(ImportedRecord& record, const UffFunction& function);

// Which of how many records of its file a function belongs to; nothing for files of others.
struct OwnPart {
  std::int64_t number = 0;
  std::int64_t count = 0;
};
[[nodiscard]] std::optional<OwnPart> OwnPartOf(const UffFunction& function);

}  // namespace kestrel::exchange
