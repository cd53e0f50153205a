// A pointer write and a buffer read for each word.
// SPDX-License-Identifier: MIT
#include "acquisition/buffer_points.h"

#include <array>

#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr int kPointsPerProgressStep = 64;

bool ReadAxis(RegisterAccess& registers, Axis axis, Record& record, const ReadoutSteps& steps) {
  const int points = static_cast<int>(record.Points());
  for (int i = 0; i < points; ++i) {
    const auto word = ReadBufferWord(registers, {axis, i});
    if (!word) return false;
    PutPoint(record, {axis, i}, *word);
    if (i % kPointsPerProgressStep == 0 && steps.points) {
      steps.points(static_cast<int>(Index(axis)) * points + i, 3 * points);
    }
  }
  return true;
}

}  // namespace

std::int16_t BufferRow(Axis axis) {
  return std::array{row::X_BUF, row::Y_BUF, row::Z_BUF}[Index(axis)];
}

std::optional<std::int32_t> ReadBufferWord(RegisterAccess& registers, const BufferPlace& place) {
  if (!registers.Write(row::BUF_PNTR, place.point)) return std::nullopt;
  const auto reading = registers.Read(BufferRow(place.axis));
  if (!reading) return std::nullopt;
  return reading->value;
}

void PutPoint(Record& record, const BufferPlace& place, std::int32_t word) {
  record.Of(place.axis).raw(place.point) = word;
  record.Of(place.axis).data(place.point) = word * record.lsbWeight;
}

bool ReadPointsSingly(RegisterAccess& registers, Record& record, const ReadoutSteps& steps) {
  for (const Axis axis : kAxes) {
    if (!ReadAxis(registers, axis, record, steps)) return false;
  }
  return true;
}

}  // namespace kestrel
