// Words of 16 bits, with a sign or without one.
// SPDX-License-Identifier: MIT
#include "archive/packed_words.h"

#include <algorithm>
#include <cmath>

namespace kestrel::archive {
namespace {

std::uint16_t WordOf(double value) {
  if (value != std::floor(value) || value < INT16_MIN || value > UINT16_MAX) {
    throw RuntimeError("a word of the record, " + std::to_string(value) + ", does not fit 16 bits");
  }
  return static_cast<std::uint16_t>(static_cast<std::int32_t>(value));
}

}  // namespace

database::Bytes PackedWords(const Record& record) {
  database::Bytes bytes;
  bytes.reserve(record.axes.size() * record.Points() * 2);
  for (const AxisRecord& axis : record.axes) {
    for (const double value : axis.raw.First(record.Points())) {
      const std::uint16_t word = WordOf(value);
      bytes.push_back(static_cast<std::uint8_t>(word & 0xff));
      bytes.push_back(static_cast<std::uint8_t>(word >> 8));
    }
  }
  return bytes;
}

bool AreSigned(const Record& record) {
  return std::ranges::any_of(record.axes, [&](const AxisRecord& axis) {
    return std::ranges::any_of(axis.raw.First(record.Points()), [](double v) { return v < 0; });
  });
}

void UnpackWords(const database::Bytes& bytes, bool areSigned, Record& record) {
  const std::size_t points = record.Points();
  if (bytes.size() != record.axes.size() * points * 2) {
    throw database::DatabaseError(database::Fault::Corrupt,
                                  "the points of a record are " + std::to_string(bytes.size()) +
                                      " bytes long, not " +
                                      std::to_string(record.axes.size() * points * 2));
  }
  auto next = bytes.begin();
  for (AxisRecord& axis : record.axes) {
    for (int i = 0; i < static_cast<int>(points); ++i, next += 2) {
      const auto word = static_cast<std::uint16_t>(next[0] | next[1] << 8);
      axis.raw(i) = areSigned ? static_cast<std::int16_t>(word) : word;
      axis.data(i) = axis.raw(i) * record.lsbWeight;
    }
  }
}

}  // namespace kestrel::archive
