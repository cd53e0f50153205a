// The options that ask for peaks and levels of a record, and in what they are told.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <optional>

#include "analysis/quantity.h"

namespace kestrel {

// --quantity and --amplitude, which outlive `app`.
struct QuantityOptions {
  void AddTo(CLI::App& app);

  [[nodiscard]] bool Any() const { return quantity || amplitude; }
  // Where no amplitude is chosen: acceleration as peak, velocity as RMS, displacement peak to peak.
  [[nodiscard]] analysis::QuantityChoice Choice() const;
  // Throws CLI::ValidationError where the two do not go together.
  void Check() const;

  std::optional<analysis::Quantity> quantity{};
  std::optional<analysis::Amplitude> amplitude{};
};

class NumberChoice {
 public:
  NumberChoice() = default;
  NumberChoice(int peaks, bool levels, const QuantityOptions& quantity)
      : peaks_(peaks), levels_(levels), quantity_(quantity) {}

  // Adds --peaks, --levels, --quantity and --amplitude; `this` outlives `app`.
  void AddTo(CLI::App& app);

  // The most peaks an axis is told; 0 where none are asked for.
  [[nodiscard]] int Peaks() const { return peaks_; }
  [[nodiscard]] bool Levels() const { return levels_; }
  [[nodiscard]] bool Any() const { return peaks_ > 0 || levels_; }
  [[nodiscard]] analysis::QuantityChoice Quantity() const { return quantity_.Choice(); }

 private:
  void Check() const;

  int peaks_ = 0;
  bool levels_ = false;
  QuantityOptions quantity_;
};

}  // namespace kestrel
