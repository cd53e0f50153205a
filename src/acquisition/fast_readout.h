// The fast read-out: whether it is chosen, and whether it may be trusted over this interface.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "acquisition/buffer_frames.h"
#include "acquisition/buffer_points.h"
#include "connection/core.h"

namespace kestrel {

// Reads the points of a record in blocks of sixteen frames where that is chosen, else one by one.
//
// Blocks are held against single accesses: 3 words of each axis at random places in every record,
// 32 of each in the first one after an interface was taken, its ends among them. Where they differ
// the road is refused from then on, and the record is read again one by one. A sensor that has
// counted another record meanwhile proves nothing.
class FastReadout {
 public:
  // What was found wrong.
  struct Difference {
    std::string road;  // "Ezusb-0, Board 7", "parallel port 378"
    BufferPlace place;
    std::int32_t single = 0;   // the word that came alone
    std::int32_t inBlock = 0;  // and the one that came in a block
  };

  explicit FastReadout(Core& core);

  // Off at the start. Chosen anew, the present road is no longer refused.
  void Choose(bool chosen);
  [[nodiscard]] bool Chosen() const { return chosen_; }

  // Whether the next record will be read in blocks.
  [[nodiscard]] bool InUse() const;

  // The roads that are refused, for whoever remembers them.
  [[nodiscard]] const std::vector<std::string>& Refused() const { return refused_; }
  void Refuse(std::vector<std::string> roads) { refused_ = std::move(roads); }

  // `told` hears of each road that is refused, once its record has been read again.
  void OnRefused(std::function<void(const Difference&)> told) { told_ = std::move(told); }

  // Makes the places that are compared known beforehand.
  void Seed(std::uint32_t seed) { random_.emplace(seed); }

  // The points of a record that has its kind, its scale and its record count; false when the sensor
  // was lost.
  [[nodiscard]] bool ReadPoints(Record& record, const ReadoutSteps& steps);

 private:
  // A road and how often one was taken: the same as long as nothing was connected anew.
  struct Tried {
    std::string road;
    int connection = 0;
    bool operator==(const Tried&) const = default;
  };
  struct Sample {
    BufferPlace place;
    std::int32_t word = 0;
  };

  [[nodiscard]] Tried Present() const;
  [[nodiscard]] std::vector<BufferPlace> Places(int points);
  [[nodiscard]] std::optional<std::vector<Sample>> ReadSamples(int points);
  bool ReadAgain(Record& record, const ReadoutSteps& steps, const Difference& difference);

  Core& core_;
  std::optional<std::mt19937> random_;  // of the clock at its first use
  bool chosen_ = false;
  std::vector<std::string> refused_;
  std::optional<Tried> proven_;
  std::function<void(const Difference&)> told_;
};

// What a user is told of it, without the cure.
[[nodiscard]] std::string TextOf(const FastReadout::Difference& difference);

}  // namespace kestrel
