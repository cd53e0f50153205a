// Averages and holds over the captures that come, one of each axis.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "analysis/trace_set.h"
#include "study/measured.h"

namespace kestrel::study {

class Accumulated {
 public:
  explicit Accumulated(int averageOf) : averageOf_(averageOf) { Restart(); }

  // Takes in a capture. A capture that does not fit what is there begins anew, and Restarted()
  // tells why.
  void Add(const Measured& capture);
  void Restart(const std::string& why = {});
  // Another number of captures begins anew.
  void AverageOf(int captures);

  // Why what is there began anew of itself: "other window: Hanning"; empty where the user or
  // nothing began it.
  [[nodiscard]] const std::string& Restarted() const { return restarted_; }
  // Null before the first capture, and for the extras that are no accumulation.
  [[nodiscard]] const analysis::Spectrum* Of(Extra extra, Axis axis) const;

 private:
  struct OfAxis {
    analysis::TraceAverage linear;
    analysis::TraceAverage exponential;
    analysis::TraceHold maximum{analysis::Hold::Maximum};
    analysis::TraceHold minimum{analysis::Hold::Minimum};
  };
  [[nodiscard]] std::optional<std::string> WhyNot(const Measured& capture) const;

  int averageOf_;
  std::vector<OfAxis> axes_ = {};
  std::string restarted_ = {};
};

}  // namespace kestrel::study
