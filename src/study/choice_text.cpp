// The settings of a choice, and how their lines are written and read.
// SPDX-License-Identifier: MIT
#include "study/choice_text.h"

#include <algorithm>
#include <utility>

#include "study/choice_setting.h"

namespace kestrel::study {
namespace {

constexpr double kMostG = 1'000;
constexpr double kMostDb = 200;
constexpr int kMostAverages = 10'000;
constexpr int kMostMembers = 50;
constexpr int kMostPeaks = 1'000;
constexpr int kMostHarmonics = 50;
constexpr std::size_t kLongestLine = 65'536;
constexpr std::size_t kMostMessages = 50;

// In the order of the enumeration; the first two are data that are not kept.
Words ExtraWords() {
  return {"frozen",       "reference",   "linear average", "exponential average",
          "maximum hold", "minimum hold"};
}

bool IsKept(Extra extra) {
  return extra != Extra::Frozen && extra != Extra::Reference;
}

Setting Extras() {
  return {"trace",
          [](const StudyChoice& choice) {
            std::vector<Json> all;
            for (const Extra extra : choice.extras) {
              if (IsKept(extra)) all.emplace_back(ExtraWords().at(static_cast<std::size_t>(extra)));
            }
            return all;
          },
          [](StudyChoice& choice, const Json& json) {
            const auto extra = ValueOf<Extra>(ExtraWords(), json);
            if (!extra || !IsKept(*extra)) return false;
            choice.extras.insert(*extra);
            return true;
          }};
}

std::vector<Setting> QuantitySettings() {
  return {
      Word("quantity", [](auto& c) -> auto& { return c.quantity.quantity; },
           {"acceleration", "level", "density", "velocity", "displacement"}),
      Word("amplitude", [](auto& c) -> auto& { return c.quantity.amplitude; },
           {"peak", "RMS", "peak to peak"}),
      Word("level re", [](auto& c) -> auto& { return c.quantity.reference; }, {"1 g", "1 um/s2"}),
      Number(
          "lowest Hz", [](auto& c) -> auto& { return c.quantity.lowestHz; }, 0, kMostHz),
      Word("quantity over time", [](auto& c) -> auto& { return c.timeQuantity; },
           {"acceleration", "velocity"}),
      Number(
          "over time from Hz", [](auto& c) -> auto& { return c.timeFromHz; }, 0, kMostHz),
      Word("magnitudes are", [](auto& c) -> auto& { return c.meaning; }, {"peak of a sine", "RMS"}),
      Word("window of samples", [](auto& c) -> auto& { return c.timeWindow; },
           {"rectangular", "Hanning", "flat top"}),
  };
}

std::vector<Setting> PictureSettings() {
  const Words scales{"linear", "logarithmic"};
  return {
      Word("view", [](auto& c) -> auto& { return c.view; },
           {"spectrum", "time", "waterfall", "wide", "library", "trend", "alarm bands", "monitor"}),
      Word(
          "scale up", [](auto& c) -> auto& { return c.up; }, scales),
      Word(
          "scale across", [](auto& c) -> auto& { return c.across; }, scales),
      Word("unit across", [](auto& c) -> auto& { return c.unit; }, {"bin", "Hz", "CPM", "order"}),
      OneValue(
          "axes shown", [](auto& c) -> auto& { return c.shown; }, AxesOf),
      Word("focus", [](auto& c) -> auto& { return c.focus; }, {"X", "Y", "Z"}),
      Flag(
          "stacked", [](auto& c) -> auto& { return c.stacked; }),
      Flag(
          "alarm bands", [](auto& c) -> auto& { return c.showBands; }),
      Flag(
          "labels", [](auto& c) -> auto& { return c.showLabels; }),
      Flag(
          "known frequencies", [](auto& c) -> auto& { return c.showKnown; }),
      Extras(),
      Whole(
          "average of", [](auto& c) -> auto& { return c.averageOf; }, 1, kMostAverages),
      Parts(
          "band", [](auto& c) -> auto& { return c.bands; }, BandOf),
      Parts(
          "marker", [](auto& c) -> auto& { return c.markers; }, MarkerOf),
  };
}

std::vector<Setting> CursorSettings() {
  const auto placesTo = [](double most) {
    return [most](const Json& json) { return PlacesOf(json, most); };
  };
  return {
      Word("cursor", [](auto& c) -> auto& { return c.cursor; },
           {"none", "single", "delta", "harmonic", "sideband"}),
      OneValue(
          "cursor Hz", [](auto& c) -> auto& { return c.inSpectrum; }, placesTo(kMostHz)),
      OneValue(
          "cursor s", [](auto& c) -> auto& { return c.inTime; }, placesTo(kMostSeconds)),
      Whole(
          "cursor members", [](auto& c) -> auto& { return c.cursorMembers; }, 1, kMostMembers),
      Number(
          "peaks from g", [](auto& c) -> auto& { return c.peaks.floorG; }, 0, kMostG),
      Number(
          "peaks above noise dB", [](auto& c) -> auto& { return c.peaks.prominenceDb; }, 0,
          kMostDb),
      Whole(
          "peaks at most", [](auto& c) -> auto& { return c.peaks.atMost; }, 1, kMostPeaks),
  };
}

std::vector<Setting> MachineSettings() {
  return {
      Maybe(
          "shaft rpm", [](auto& c) -> auto& { return c.machine.rpm; }, analysis::IsSpeed),
      Maybe(
          "line Hz", [](auto& c) -> auto& { return c.machine.lineHz; }, IsFrequency),
      Parts(
          "gear mesh", [](auto& c) -> auto& { return c.machine.meshes; }, MeshOf),
      Parts(
          "bearing", [](auto& c) -> auto& { return c.machine.bearings; }, BearingOf),
      Parts(
          "free frequency", [](auto& c) -> auto& { return c.machine.free; }, FreeOf),
      Whole(
          "harmonics", [](auto& c) -> auto& { return c.machine.harmonics; }, 1, kMostHarmonics),
      Parts(
          "known off", [](auto& c) -> auto& { return c.knownOff; }, NameOf),
      OneValue(
          "zones", [](auto& c) -> auto& { return c.zones; }, ZonesOf),
  };
}

std::vector<Setting> Settings() {
  std::vector<Setting> all;
  for (auto some : {QuantitySettings(), PictureSettings(), CursorSettings(), MachineSettings()}) {
    std::ranges::move(some, std::back_inserter(all));
  }
  return all;
}

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// Why the line was left out; empty where it was not.
std::string Read(std::string_view line, const std::vector<Setting>& settings, StudyChoice& choice) {
  const auto equals = line.find('=');
  const std::string_view key = Trimmed(line.substr(0, equals));
  const auto setting = std::ranges::find(settings, key, &Setting::key);
  if (setting == settings.end() || equals == std::string_view::npos) return "is not a setting";
  const std::string named = "cannot be read: " + std::string(key);
  if (line.size() > kLongestLine) return named;
  const Json json = Json::parse(line.substr(equals + 1), nullptr, false);
  return !json.is_discarded() && setting->take(choice, json) ? "" : named;
}

}  // namespace

std::string TextOf(const StudyChoice& choice) {
  std::string text;
  for (const Setting& setting : Settings()) {
    for (const Json& json : setting.tell(choice)) {
      text += std::string(setting.key) + " = " +
              json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    }
  }
  return text;
}

ReadChoice ChoiceFrom(std::string_view text) {
  const std::vector<Setting> settings = Settings();
  ReadChoice read;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty()) continue;
    const std::string why = Read(line, settings, read.choice);
    if (why.empty() || read.messages.size() >= kMostMessages) continue;
    read.messages.push_back("Line " + std::to_string(number) + " " + why);
  }
  return read;
}

}  // namespace kestrel::study
