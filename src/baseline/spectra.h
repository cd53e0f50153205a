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
// Words lie in tiles of sixteen records, those of one bin beside one another: a band of a tile is
// one stretch of memory.
class Spectra {
 public:
  using Word = std::uint16_t;
  static constexpr std::size_t kWords = 3 * analysis::kSpectrumBins;  // X, Y, Z
  static constexpr std::size_t kTile = 16;

  Spectra() = default;
  explicit Spectra(std::size_t count);

  [[nodiscard]] std::size_t Count() const { return count_; }
  [[nodiscard]] std::size_t Tiles() const { return words_.size() / (kTile * kWords); }
  // Drops the last ones.
  void Shorten(std::size_t count);

  // `words`: kWords of them.
  void Set(std::size_t record, std::span<const Word> words);
  void Copy(std::size_t from, std::size_t to);
  [[nodiscard]] Word At(std::size_t record, Axis axis, std::size_t bin) const {
    return words_[PlaceOf(record) + (Index(axis) * analysis::kSpectrumBins + bin) * kTile];
  }
  // Of all records of a tile; those beyond Count are 0.
  [[nodiscard]] std::span<const Word, kTile> Of(std::size_t tile, Axis axis,
                                                std::size_t bin) const {
    const std::size_t from = (tile * kWords + Index(axis) * analysis::kSpectrumBins + bin) * kTile;
    return std::span<const Word, kTile>(words_.data() + from, kTile);
  }
  bool operator==(const Spectra&) const = default;

 private:
  [[nodiscard]] static std::size_t PlaceOf(std::size_t record) {
    return record / kTile * kTile * kWords + record % kTile;
  }

  std::size_t count_ = 0;
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
