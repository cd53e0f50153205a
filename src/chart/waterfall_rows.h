// The spectra of a waterfall with their times: the newest so many, in compact form.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace kestrel {

// All rows have the same number of values. Memory is taken as rows come.
class WaterfallRows {
 public:
  explicit WaterfallRows(std::size_t values = 256, std::size_t most = 10000);

  // Time in seconds, later than the last row's; false, and nothing added, otherwise or when the
  // number of values is another.
  bool Add(double time, std::span<const double> values);
  void Clear();

  // Index 0 is the oldest row.
  [[nodiscard]] std::size_t Count() const { return times_.size(); }
  [[nodiscard]] std::size_t Values() const { return values_; }
  [[nodiscard]] double Time(std::size_t index) const { return times_[Place(index)]; }
  [[nodiscard]] std::span<const float> Row(std::size_t index) const;
  // Of the row whose time is nearest; only with rows.
  [[nodiscard]] std::size_t Nearest(double time) const;

  [[nodiscard]] std::size_t Bytes() const;

 private:
  [[nodiscard]] std::size_t Place(std::size_t index) const {
    return (oldest_ + index) % times_.size();
  }

  std::size_t values_;
  std::size_t most_;
  std::size_t oldest_ = 0;  // in a full ring
  std::vector<double> times_;
  std::vector<float> cells_;
};

}  // namespace kestrel
