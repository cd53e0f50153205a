// The metrics: which there are, what each means, and their values at a moment.
// SPDX-License-Identifier: MIT
#pragma once

#include <prometheus/metric_family.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "publish/messages.h"
#include "publish/publisher.h"

namespace kestrel::publish {

struct MetricValues {
  Names names{};
  std::string version{};  // of the program
  std::optional<Levels> levels{};
  std::optional<Status> status{};
  // Told since the start.
  std::int64_t alarmsBegun = 0;
  std::int64_t alarmsEnded = 0;
  PublisherState publisher{};
};

// What is not known is left out. All carry the labels bench and sensor; those of an axis the label
// axis, x, y or z.
[[nodiscard]] std::vector<prometheus::MetricFamily> FamiliesOf(const MetricValues& values);

}  // namespace kestrel::publish
