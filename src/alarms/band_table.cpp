// The checked places of the band table.
// SPDX-License-Identifier: MIT
#include "alarms/band_table.h"

#include "numeric/runtime_error.h"

namespace kestrel {

namespace {

BandTable bands;

}  // namespace

const BandTable& AlarmBandTable = bands;

BandTable& ChangeableBands() {
  return bands;
}

void ResetAlarmBandTable() {
  bands = {};
}

std::size_t BandTable::Checked(int field, int band, int option) {
  if (field < 0 || field >= kFields || band < 0 || band >= kBandSlots || option < 0 ||
      option >= kOptionSlots) {
    throw RuntimeError(kSubscriptOutOfRange);
  }
  const int index = (option * kBandSlots + band) * kFields + field;
  return static_cast<std::size_t>(index);
}

}  // namespace kestrel
