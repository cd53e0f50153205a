// Spectra over time: rows with their true times and the gaps between them, in little memory.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/spectrum.h"

namespace kestrel::analysis {

inline constexpr std::size_t kWaterfallRows = 10000;

// A level of one bin at one time.
struct TimedLevel {
  std::chrono::system_clock::time_point time{};
  double peakG = 0;
  std::string gapBefore{};  // why rows are missing before this one; empty where none are
};

// At most so many rows, the oldest dropped first. A row keeps the magnitude words of three axes,
// about 1.6 kB, so that 10,000 rows take 16 MB.
class Waterfall {
 public:
  explicit Waterfall(std::size_t mostRows = kWaterfallRows);

  // Nothing where the record was taken in; else why not: a time record, an option or range that is
  // none. Scaled as the record is, or by the range that its information word tells.
  std::optional<std::string> Add(const Record& record, bool ownRange = false);
  // Rows are missing from here to the next one: "sensor unplugged".
  void AddGap(std::string reason);
  void Clear();

  [[nodiscard]] std::size_t Rows() const { return rows_.size(); }
  // How many have ever been taken in.
  [[nodiscard]] std::int64_t Taken() const { return taken_; }
  // Row 0 is the oldest; `row` below Rows() in all that follow.
  [[nodiscard]] std::chrono::system_clock::time_point TimeOf(std::size_t row) const;
  [[nodiscard]] const std::string& GapBefore(std::size_t row) const;
  [[nodiscard]] int OptionOf(std::size_t row) const { return At(row).option; }
  // The spectrum that the row came from, its words scaled as the record's were.
  [[nodiscard]] Spectrum SpectrumOf(std::size_t row, Axis axis,
                                    MagnitudeMeaning meaning = MagnitudeMeaning::PeakOfSine) const;
  // The record that the row came from as far as a row keeps it: magnitudes, settings and time, the
  // range being the one it is scaled by.
  [[nodiscard]] Record RecordOf(std::size_t row) const;
  // Level against time in the bin at hz; rows whose spectrum does not reach there are left out.
  [[nodiscard]] std::vector<TimedLevel> ColumnAt(
      double hz, Axis axis, MagnitudeMeaning meaning = MagnitudeMeaning::PeakOfSine) const;
  // Of all rows.
  [[nodiscard]] std::size_t Bytes() const;

 private:
  struct Row {
    std::chrono::system_clock::time_point time{};
    std::array<std::array<std::uint16_t, kSpectrumBins>, 3> words{};
    double gPerWord = 0;
    std::int16_t averages = 1;
    std::uint8_t option = 0;
    std::uint8_t window = 0;
    std::uint8_t range = 0;
    std::string gapBefore{};
  };
  [[nodiscard]] const Row& At(std::size_t row) const;
  void Put(Row row);

  std::size_t mostRows_;
  std::vector<Row> rows_{};
  std::size_t oldest_ = 0;  // index of row 0 once the ring is full
  std::int64_t taken_ = 0;
  std::string gap_{};  // before the next row
};

}  // namespace kestrel::analysis
