// Band files read for the steps of a plan.
// SPDX-License-Identifier: MIT
#include "monitor/plan/bands_of.h"

#include "seams/path_text.h"
#include "station/sensor_bands.h"

namespace kestrel::monitor {

std::variant<std::vector<std::optional<BandTable>>, Mistakes> BandsOf(
    const Plan& plan, Files& files, const std::filesystem::path& folder) {
  std::vector<std::optional<BandTable>> all;
  Mistakes mistakes;
  for (const Step& step : plan.steps) {
    all.emplace_back();
    if (step.bands.empty()) continue;
    const auto bands = ReadBandFile(files, (folder / PathOf(step.bands)).lexically_normal());
    if (bands) {
      all.back() = *bands;
    } else {
      mistakes.push_back({step.line, "bands: " + bands.Why().text});
    }
  }
  if (!mistakes.empty()) return mistakes;
  return all;
}

}  // namespace kestrel::monitor
