// How a record's information word is decoded and its words are weighted.
// SPDX-License-Identifier: MIT
#include "record/record.h"

namespace kestrel {
namespace {

// g per LSB of an FFT magnitude by range code. The first differs from the record control model's
// gLsb on purpose.
constexpr std::array<double, 4> kLsbWeights{0.0000153, 0.0000763, 0.0003052, 0.0011921};
constexpr std::array<double, 4> kFullScales{1, 5, 20, 70};

}  // namespace

RecordSettings SettingsFromWords(std::int32_t recInfo, std::int32_t recCtrl) {
  const auto field = [recInfo](int lowest, std::int32_t mask) {
    return static_cast<std::int16_t>(recInfo >> lowest & mask);
  };
  return {.recInfo = recInfo,
          .recCtrl = recCtrl,
          .option = field(14, 3),
          .window = field(12, 3),
          .range = field(10, 3),
          .averages = field(0, 0x1FF)};
}

Record Rescaled(Record record, std::int16_t range) {
  record.lsbWeight = LsbWeightOf(range, record.kind);
  record.scaledRange = range;
  for (AxisRecord& axis : record.axes) {
    for (int i = 0; i <= record.Width(); ++i) axis.data(i) = axis.raw(i) * record.lsbWeight;
  }
  return record;
}

double LsbWeightOf(std::int16_t range, RecordKind kind) {
  return kLsbWeights.at(static_cast<std::size_t>(range)) * (kind == RecordKind::Time ? 2 : 1);
}

double FullScaleOf(std::int16_t range) {
  return kFullScales.at(static_cast<std::size_t>(range));
}

}  // namespace kestrel
