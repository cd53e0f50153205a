// What the archive knows of a record, as a file tells it.
// SPDX-License-Identifier: MIT
#include "exchange/kept_note.h"

#include <utility>

namespace kestrel::exchange {

NotedRecord Noted(archive::KeptRecord kept) {
  archive::Remarks& remarks = kept.remarks;
  return {.record = std::move(kept.record),
          .note = {.machine = std::move(remarks.machine),
                   .point = std::move(remarks.point),
                   .orientation = std::move(remarks.orientation),
                   .speedRpm = remarks.rpm,
                   .note = std::move(remarks.note),
                   .tags = std::move(remarks.tags),
                   .program = std::move(kept.program)}};
}

}  // namespace kestrel::exchange
