// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "plot/plot_summary.h"

#include <algorithm>

#include "numeric/number_format.h"
#include "record/axis.h"
#include "record/capture_data.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

const RecordArray& Record(Axis axis) {
  switch (axis) {
    case Axis::X:
      return DataX;
    case Axis::Y:
      return DataY;
    default:
      return DataZ;
  }
}

std::string Highest(const RecordArray& record) {
  int bin = 0;
  for (int i = 1; i <= Buff.width; ++i) {
    if (record(i) > record(bin)) bin = i;
  }
  return "highest " + FixedNumber(record(bin), 3) + " g at bin " + std::to_string(bin) + ", " +
         GroupedWholeNumber(bin * BinWidth(Buff.sampleRateOption)) + " Hz";
}

std::string Reach(const RecordArray& record) {
  double least = record(0);
  double most = record(0);
  for (int i = 1; i <= Buff.width; ++i) {
    least = std::min(least, record(i));
    most = std::max(most, record(i));
  }
  return "from " + FixedNumber(least, 3) + " to " + FixedNumber(most, 3) + " g";
}

}  // namespace

std::string PlotSummary(const std::array<bool, 3>& shown) {
  const bool isTime = Buff.width == kTimeWidth;
  std::string text =
      (isTime ? "Time record, samples 0 to " : "Spectrum, bins 0 to ") + std::to_string(Buff.width);
  text += ".";
  for (const Axis axis : kAxes) {
    if (!shown[Index(axis)]) continue;
    text += std::string(" ") + static_cast<char>('X' + Index(axis)) + ": ";
    text += (isTime ? Reach(Record(axis)) : Highest(Record(axis))) + ".";
  }
  return text;
}

}  // namespace kestrel
