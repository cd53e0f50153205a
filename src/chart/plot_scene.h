// What an analyser's plot shows, as values: traces, bands, labels, cursor and read-out.
// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "chart/axis_map.h"
#include "chart/time_ticks.h"

namespace kestrel {

inline constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

// What a trace is drawn in: the axis it belongs to, or none of them (references, other records).
enum class PlotInk { X, Y, Z, Other };

enum class TraceStyle {
  Live,       // 1.5 px
  Held,       // 1 px: holds, frozen copies, overlaid records
  Reference,  // 1.25 px, dashed
};

inline constexpr int kTraceDashes = 6;  // that can be told apart

// x does not decrease and is in Hz or s; y in the unit of the pane's axis (dB already in dB). What
// is not a number in y is a gap.
struct SceneTrace {
  std::string name = {};    // for the legend: "X", "12 November"
  std::string figure = {};  // beside the name in the legend: "0.454"; may be empty
  PlotInk ink = PlotInk::Other;
  TraceStyle style = TraceStyle::Live;
  bool isFocus = false;   // on top, half-bold in the legend
  bool isFilled = false;  // lightly, under the trace
  // Where more than two points share a pixel column: least to largest shaded, their median as the
  // line.
  bool isSpread = false;
  // For paper without colours: a pattern of its own (0: drawn through, up to kTraceDashes), and a
  // letter that stands at the trace where there is one.
  int dash = 0;
  std::string letter = {};
  std::vector<double> x = {};
  std::vector<double> y = {};
};

// Many records at once: least to largest shaded, median as a line. All share x.
struct PlotCrowd {
  std::string name = {};  // "42 records, least to largest, median"
  PlotInk ink = PlotInk::Other;
  std::vector<double> x = {};
  std::vector<std::vector<double>> y = {};
};

enum class BandState { Well, Warning, Fault };

struct PlotBand {
  double from = 0;
  double to = 0;
  std::string name = {};      // "3"
  std::string headroom = {};  // "+22.9 dB", shown where there is room
  double warning = kNoValue;
  double fault = kNoValue;
  BandState state = BandState::Well;
  std::string stateText = {};  // "Warning 3, +0.6 dB"
};

// A label at a peak, or a marker with a text of the user's.
struct PlotPeak {
  double x = 0;
  double y = 0;
  std::string title = {};   // "22,698.2 Hz"
  std::string detail = {};  // "X 0.601 g"; the first to go where there is no room
};

// A place along x that has a name: a known frequency.
struct PlotMark {
  double from = 0;
  double to = 0;
  std::string name = {};
};

// A threshold through the whole pane; a warning is dashed.
struct PlotLimit {
  double value = 0;
  std::string name = {};  // "warning 0.880 g"
  bool isFault = false;
};

// Where there is nothing: hatched and named, over the full height.
struct PlotGap {
  double from = 0;
  double to = 0;
  std::string reason = {};
};

struct PlotPane {
  std::string title = {};  // "Acceleration, g peak"
  std::string unit = {};   // "g", for the read-out that the plot makes itself
  AxisKind up = AxisKind::Linear;
  std::optional<PlotRange> range = {};  // instead of one that fits the values
  std::vector<SceneTrace> traces = {};
  std::optional<PlotCrowd> crowd = {};
  std::vector<PlotBand> bands = {};
  std::vector<PlotPeak> peaks = {};  // largest first
  std::vector<PlotLimit> limits = {};
  double share = 1;  // of the height, beside those of the other panes
};

// Below the first pane, along the same axis: when what was the case.
struct PlotLane {
  struct Span {
    double from = 0;
    double to = 0;
    BandState state = BandState::Well;
  };
  std::string name = {};  // "Alarms"
  std::vector<Span> spans = {};
};

struct PlotAcross {
  std::string title = {};  // "Frequency, Hz"
  std::string unit = {};   // "Hz"
  AxisKind kind = AxisKind::Linear;
  double factor = 1;     // from Hz or s to what is written at the axis: 60 for CPM, 1000 for ms
  PlotRange whole = {};  // what "show all" shows
  double validFrom = -std::numeric_limits<double>::infinity();  // below it the values hold offset
  std::optional<PlotCalendar> calendar = {};                    // of an axis of times, in s
};

struct PlotScene {
  std::string head = {};    // "Spectrum", half-bold; with an empty one there is no record line
  std::string line = {};    // "0 to 70 g, Hanning, 8 averages, option 0, Δf 195.7 Hz, 18:34:16"
  std::string hint = {};    // in the middle while no pane has a trace
  std::string note = {};    // what is chosen and cannot be drawn, why, and what to choose
  std::string source = {};  // sensor, version and date: in pictures that leave the program
  PlotAcross across = {};
  std::vector<PlotPane> panes = {};  // one below the other, along one horizontal axis
  std::vector<PlotMark> marks = {};
  std::vector<PlotGap> gaps = {};
  std::vector<PlotLane> lanes = {};
};

// Head and line in one: the name of the plot.
[[nodiscard]] inline std::string HeadLine(const PlotScene& scene) {
  return scene.line.empty() ? scene.head : scene.head + ", " + scene.line;
}

enum class MemberKind { Main, Found, Missing };

// One line of the cursor.
struct PlotMember {
  double x = 0;
  std::string flag = {};  // "f₀", "2×", "A"
  MemberKind kind = MemberKind::Main;
  int pane = 0;         // of the ring
  double y = kNoValue;  // a ring is drawn there
};

struct PlotReadOut {
  struct Row {
    std::optional<PlotInk> ink = {};  // a swatch
    std::string name = {};
    std::string value = {};
  };
  std::string title = {};
  std::vector<Row> rows = {};
};

struct SceneCursor {
  std::vector<PlotMember> members = {};
  bool isSpan = false;        // shaded from the first to the second member (delta cursor)
  std::string spanText = {};  // between the flags: "1.218 ms"
  PlotReadOut readOut = {};   // stays at the first member; none without a title
  std::string spoken = {};    // for assistive technology
};

}  // namespace kestrel
