// The magnitude words of all records of a baseline, in memory.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "analysis/spectrum.h"
#include "archive/archive.h"
#include "baseline/sets.h"
#include "record/axis.h"

namespace kestrel::baseline {

// 1,536 bytes a record. Records are numbered: the good ones as in the sets, then the bad ones.
class Spectra {
 public:
  using Word = std::uint16_t;
  static constexpr std::size_t kWords = 3 * analysis::kSpectrumBins;  // X, Y, Z

  Spectra() = default;
  explicit Spectra(std::vector<Word> words) : words_(std::move(words)) {}  // kWords a record

  [[nodiscard]] std::size_t Count() const { return words_.size() / kWords; }
  // 256 of them.
  [[nodiscard]] std::span<const Word> Of(std::size_t record, Axis axis) const {
    return std::span(words_).subspan(record * kWords + Index(axis) * analysis::kSpectrumBins,
                                     analysis::kSpectrumBins);
  }
  bool operator==(const Spectra&) const = default;

 private:
  std::vector<Word> words_;
};

// More than this does not fit into memory that can be spared.
inline constexpr std::size_t kMostRecords = 400'000;

struct Loaded {
  Sets sets;  // without the records whose words are missing, damaged or no measurement
  Spectra spectra;
  bool whole = true;  // false where `goOn` ended it: nothing is loaded then
};

// `goOn` is asked now and then with the number of records done and of all; false ends it. Throws
// DatabaseError, and RuntimeError for more than kMostRecords.
[[nodiscard]] Loaded Load(
    archive::Archive& archive, Sets sets,
    const std::function<bool(std::size_t done, std::size_t all)>& goOn = [](auto, auto) {
      return true;
    });

}  // namespace kestrel::baseline
