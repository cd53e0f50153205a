// The points of one axis of a record.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "numeric/runtime_error.h"

namespace kestrel {

inline constexpr std::size_t kRecordPoints = 512;
inline constexpr std::int16_t kFftWidth = 255;   // last bin of an FFT record
inline constexpr std::int16_t kTimeWidth = 511;  // last sample of a time record

// One axis of a record. An index outside 0..511 throws RuntimeError "Subscript out of range".
class RecordArray {
 public:
  double& operator()(int index) { return points_[Checked(index)]; }
  double operator()(int index) const { return points_[Checked(index)]; }
  bool operator==(const RecordArray&) const = default;

  // The first `count` points, at most 512.
  [[nodiscard]] std::span<const double> First(std::size_t count) const {
    return std::span(points_).first(count);
  }

 private:
  static std::size_t Checked(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= kRecordPoints) {
      throw RuntimeError(kSubscriptOutOfRange);
    }
    return static_cast<std::size_t>(index);
  }

  std::array<double, kRecordPoints> points_{};
};

}  // namespace kestrel
