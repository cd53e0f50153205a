// How interface, settings and remarks become a plan.
// SPDX-License-Identifier: MIT
#include "ui/watch/present_plan.h"

#include <algorithm>

#include "app/program_state.h"
#include "device/rec_ctrl.h"
#include "monitor/plan/plan_from.h"
#include "transport/usb_adapter.h"

namespace kestrel {

monitor::Road RoadOf(const Core& core, const PresentRoad& present) {
  if (core.simulated && InterfaceType != kNoInterface) {
    return {.simulated = true, .scenario = present.scenario};
  }
  if (InterfaceType == kParallelPort) {
    if (!present.portDevice.empty()) return {.portDevice = present.portDevice};
    return {.parallelAddress = PortAddress};
  }
  const auto boards = std::ranges::count_if(
      AdapterRecords, [](const AdapterRecord& board) { return board.present; });
  const std::string& name = SelectedAdapter.deviceName;
  if (InterfaceType != kUsbAdapter || boards < 2 || name.empty()) return {};
  return {.adapter = name.back() - '0'};
}

// A plan's board without a number may be any of them.
bool IsSameRoad(const monitor::Road& plan, const monitor::Road& window) {
  const auto isPort = [](const monitor::Road& road) {
    return road.parallelAddress.has_value() || !road.portDevice.empty();
  };
  return plan.simulated == window.simulated && isPort(plan) == isPort(window);
}

monitor::Plan PresentPlan(const SettingsExchange::Shown& shown, const monitor::Road& road,
                          const std::string& bench, const archive::Remarks& site) {
  const auto listed = [&](Setting setting, int otherwise) {
    const auto found = shown.lists.find(setting);
    return found == shown.lists.end() || found->second < 0 ? otherwise : found->second;
  };
  monitor::PresentSettings present{.road = road,
                                   .bench = bench,
                                   .sensor = site.machine.empty() ? "sensor" : site.machine,
                                   .remarks = site};
  if (!shown.lists.empty()) {
    present.setup = {.mode = gRecCtrl->RecModeCode(),
                     .range = gRecCtrl->RangeFS(),
                     .option = gRecCtrl->SampleRate(),
                     .window = gRecCtrl->Windowing(),
                     .averages = static_cast<std::int16_t>(listed(Setting::FftAvgs, 1))};
    present.timerWord = listed(Setting::Units, 0) << 8 | listed(Setting::Interval, 0);
  }
  return monitor::PlanFrom(present);
}

std::string NewPlanText(const monitor::Plan& plan, const analysis::ZoneLimits& zones) {
  std::string text = monitor::TextOf(plan);
  if (plan.FollowsTimer()) return text;
  return text +
         "\n# One spectrum over all sample-rate options, in turn with the above, judged by its "
         "severity:\n"
         "# [wide]\n# averages = 4\n#\n# [judge]\n# severity = " +
         zones.name + "\n";
}

}  // namespace kestrel
