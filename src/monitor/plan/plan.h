// The plan of a monitor: which sensor is captured when and how, and what is judged.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "analysis/baseline.h"
#include "analysis/severity.h"
#include "archive/kept_record.h"

namespace kestrel::archive {
struct Place;
}

namespace kestrel::monitor {

// Words of the plan and the sensor's codes for them.
using WordCode = std::pair<const char*, std::int16_t>;
inline constexpr std::array<WordCode, 4> kRanges{{{"1", 0}, {"5", 1}, {"20", 2}, {"70", 3}}};  // g
inline constexpr std::array<WordCode, 3> kWindows{
    {{"rectangular", 0}, {"hanning", 1}, {"flattop", 2}}};

// The road to the sensor.
struct Road {
  bool simulated = false;
  std::string scenario{};  // of the simulated sensor; empty: the usual one
  std::optional<int> adapter{};
  std::optional<std::int16_t> parallelAddress{};
  std::string portDevice{};
  bool operator==(const Road&) const = default;
};

enum class StepKind {
  Spectrum,
  TimeRecord,
  Wide,  // one spectrum over all sample-rate options
  Timer  // the sensor captures by its own timer; its records are fetched as they come
};

// One capture of the turn, with all that the sensor is set to for it.
struct Step {
  StepKind kind = StepKind::Spectrum;
  std::int16_t range = 3;     // code 0..3
  std::int16_t option = 0;    // sample-rate option 0..3
  std::int16_t window = 1;    // code 0..2
  std::int16_t averages = 1;  // 1..255
  std::string bands{};        // file of alarm bands that this program judges it by; empty: none
  std::size_t line = 0;       // of the plan, where its section begins
  bool operator==(const Step&) const = default;
};

// How levels become alarms, beside what the sensor itself raises.
struct Judging {
  analysis::AlarmRule rule{};                          // for levels against bands of a file
  std::optional<analysis::ZoneLimits> severity{};      // of wide spectra; none: not judged
  analysis::Zone severityWarning = analysis::Zone::C;  // from this zone on
  analysis::Zone severityFault = analysis::Zone::D;
  bool operator==(const Judging&) const = default;
};

// A line "key = value" of a section that another part of the program understands.
struct PlanLine {
  std::size_t line = 0;  // from 1
  std::string key{};
  std::string value{};
  bool operator==(const PlanLine&) const = default;
};

struct Plan {
  std::string bench{};
  std::string sensor{};
  Road road{};
  std::string archive{};          // a file or a server; empty: the usual place
  std::chrono::seconds every{0};  // from one capture to the next; of the timer: its period
  archive::Remarks remarks{};     // of every record
  std::vector<Step> steps{};      // taken in turn; with Timer there is that one alone
  Judging judging{};
  std::vector<PlanLine> publish{};

  [[nodiscard]] bool FollowsTimer() const {
    return !steps.empty() && steps.front().kind == StepKind::Timer;
  }
  bool operator==(const Plan&) const = default;
};

// Where its records go: the plan's own archive, or else the usual one.
[[nodiscard]] archive::Place ArchiveOf(const Plan& plan, const archive::Place& usual);

// What is wrong with a line of a plan; line 0 for what is missing as a whole.
struct Mistake {
  std::size_t line = 0;
  std::string what{};
  // "plan.txt:12: range: "7" is none of 1, 5, 20, 70".
  [[nodiscard]] std::string Text(const std::string& file) const;
  bool operator==(const Mistake&) const = default;
};
using Mistakes = std::vector<Mistake>;

// Bytes; some thousand times a usual plan.
inline constexpr std::size_t kLargestPlan = std::size_t{1} << 20U;
inline constexpr std::size_t kLongestName = 100;   // bytes of bench, sensor, machine, point
inline constexpr std::size_t kLongestNote = 2000;  // bytes
inline constexpr std::chrono::seconds kShortestPeriod{1};
inline constexpr std::chrono::seconds kLongestPeriod{std::chrono::days{31}};
inline constexpr std::size_t kMostSteps = 100;

// The plan that a text holds, or all its mistakes, in the order of the lines.
[[nodiscard]] std::variant<Plan, Mistakes> PlanOf(std::string_view text);
// The text of a plan, with comments for whoever edits it; PlanOf gives the same plan.
[[nodiscard]] std::string TextOf(const Plan& plan);

// The sensor's sampling alone takes this long.
[[nodiscard]] std::chrono::nanoseconds ShortestTimeOf(const Step& step);
// "option 1, 70 g, hanning, 4 averages".
[[nodiscard]] std::string NameOf(const Step& step);

}  // namespace kestrel::monitor
