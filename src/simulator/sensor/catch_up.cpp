// How many captures may be left out after a pause.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/catch_up.h"

#include <algorithm>

#include "simulator/sensor/alarm_monitor.h"

namespace kestrel {

std::uint64_t OmissibleCaptures(Traces traces, unsigned blocks, std::uint64_t due,
                                std::uint64_t passed) {
  constexpr std::uint64_t kRun = AlarmMonitor::kLongestRun;
  const auto allBut = [due](std::uint64_t kept) { return due - std::min(due, kept); };
  switch (traces) {
    case Traces::OfTheNewest:
      return allBut(1);
    case Traces::OfALatestRun:
      return allBut(kRun);
    case Traces::OfAnyRecord:
      return std::min(allBut(kRun), passed / std::max<std::uint64_t>(kExactBlocks / blocks, kRun));
    case Traces::OfEveryRecord:
      break;
  }
  return 0;
}

}  // namespace kestrel
