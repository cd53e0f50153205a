// How changed remarks are made and taken back.
// SPDX-License-Identifier: MIT
#include "archive/remarks_change.h"

namespace kestrel::archive {
namespace {

template <typename Told, typename Was>
Told WhereTold(const Told& told, const Was& was) {
  return told ? Told(was) : std::nullopt;
}

}  // namespace

Remarks RemarksChange::AppliedTo(Remarks remarks) const {
  remarks.machine = machine.value_or(remarks.machine);
  remarks.point = point.value_or(remarks.point);
  remarks.orientation = orientation.value_or(remarks.orientation);
  remarks.rpm = rpm.value_or(remarks.rpm);
  remarks.note = note.value_or(remarks.note);
  remarks.tags = CleanTags(tags.value_or(remarks.tags));
  return remarks;
}

RemarksChange RemarksChange::BackTo(const Remarks& before) const {
  return {.machine = WhereTold(machine, before.machine),
          .point = WhereTold(point, before.point),
          .orientation = WhereTold(orientation, before.orientation),
          .rpm = WhereTold(rpm, before.rpm),
          .note = WhereTold(note, before.note),
          .tags = WhereTold(tags, before.tags)};
}

}  // namespace kestrel::archive
