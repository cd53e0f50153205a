// The words in which a picture is summed up.
// SPDX-License-Identifier: MIT
#include "plot/plot_summary.h"

#include <algorithm>

#include "numeric/number_format.h"
#include "record/axis.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

std::string Highest(const Record& record, Axis axis) {
  const auto values = record.Values(axis);
  const auto bin = std::ranges::max_element(values) - values.begin();
  const double hertz = static_cast<double>(bin) * BinWidth(record.settings.option);
  return "highest " + FixedNumber(values[static_cast<std::size_t>(bin)], 3) + " g at bin " +
         std::to_string(bin) + ", " + GroupedWholeNumber(hertz) + " Hz";
}

std::string Reach(const Record& record, Axis axis) {
  const auto [least, most] = std::ranges::minmax(record.Values(axis));
  return "from " + FixedNumber(least, 3) + " to " + FixedNumber(most, 3) + " g";
}

}  // namespace

std::string PlotSummary(const Record& record, const std::array<bool, 3>& shown) {
  const bool isTime = record.kind == RecordKind::Time;
  std::string text = (isTime ? "Time record, samples 0 to " : "Spectrum, bins 0 to ") +
                     std::to_string(record.Width());
  text += ".";
  for (const Axis axis : kAxes) {
    if (!shown[Index(axis)]) continue;
    text += std::string(" ") + Letter(axis) + ": ";
    text += (isTime ? Reach(record, axis) : Highest(record, axis)) + ".";
  }
  return text;
}

}  // namespace kestrel
