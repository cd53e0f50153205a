// Cursors: single, delta, harmonic and sideband, snapping, and their tables as values.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "analysis/peaks.h"
#include "analysis/spectrum.h"

namespace kestrel::analysis {

// The curve of a trace between two points is the straight line that is drawn. Values in the unit of
// the trace; x in Hz (s of a time record), rising evenly from x0.
struct TraceView {
  const std::vector<double>* values = nullptr;
  double x0 = 0;
  double step = 1;             // > 0
  std::size_t firstValid = 0;  // points before hold nothing that can be told
  bool decibel = false;        // the values are levels: a ratio is their difference
  bool power = false;          // the values are powers: a ratio is 10 lg
};

// Value of a trace at x; none outside its valid points.
[[nodiscard]] std::optional<double> ReadAt(const TraceView& trace, double x);

enum class CursorStep { Bin, TenBins, TenthOfBin };
// The cursor moved by `count` steps (negative: down), kept within the valid points.
[[nodiscard]] double Moved(const TraceView& trace, double x, CursorStep step, int count);
// The nearest point's x, within the valid points.
[[nodiscard]] double OnPoint(const TraceView& trace, double x);

// Delta cursor from `from` to `to`.
struct DeltaReading {
  struct Row {
    std::optional<double> from{};
    std::optional<double> to{};
    std::optional<double> difference{};  // to − from
    std::optional<double> ratioDb{};     // 20 lg(to / from); none where one is not above 0
  };
  double dx = 0;                       // to − from, Hz or s
  std::optional<double> reciprocal{};  // 1 / |dx|: s or Hz; none where dx is 0
  std::vector<Row> rows{};             // one a trace
};
[[nodiscard]] DeltaReading ReadDelta(const std::vector<TraceView>& traces, double from, double to);

// A member of a harmonic or sideband cursor.
struct Member {
  int number = 1;  // n of n·f0, or m of centre + m·spacing
  double expectedHz = 0;
  std::optional<Peak> found{};         // the peak there
  double belowG = 0;                   // where none is: the largest bin within reach, g peak
  double ownG = 0;                     // value of the nearest bin, g peak
  std::optional<double> relativeDb{};  // of the found amplitude to that of member 1 (of the centre)
};

struct HarmonicReading {
  double f0 = 0;       // Hz, refined
  double f0Bound = 0;  // ±, 95 %; 0 where no member was found
  int used = 0;        // members that f0 comes from
  std::vector<Member> members{};
};

// Harmonics 1 to `count` of f0 as far as the spectrum goes. A member is the nearest peak within
// one bin or 0.5 % of its frequency, whichever is more, at most a third of f0. f0 is refined by
// least squares over the members found, weighted by their bounds, and the search repeated once. An
// f0 that is none (not finite, below one bin) gives a reading without members.
[[nodiscard]] HarmonicReading ReadHarmonics(const Spectrum& spectrum,
                                            const std::vector<Peak>& peaks, double f0, int count);

struct SidebandReading {
  double centreHz = 0;      // as given
  double spacingHz = 0;     // refined
  double spacingBound = 0;  // ±, 95 %; 0 where no sideband was found
  int used = 0;
  std::optional<double> sidebandsDb{};  // power of the sidebands found to that of the centre
  std::vector<Member> members{};        // −count to +count
};
[[nodiscard]] SidebandReading ReadSidebands(const Spectrum& spectrum,
                                            const std::vector<Peak>& peaks, double centreHz,
                                            double spacingHz, int count);

// f0 or spacing after member `number` was dragged to hz: the others follow. Nothing of member 0.
[[nodiscard]] std::optional<double> HarmonicDragged(int number, double hz);
[[nodiscard]] std::optional<double> SidebandDragged(double centreHz, int number, double hz);

// The frequency of the nearest peak within `withinHz`, or hz itself.
[[nodiscard]] double Snapped(const std::vector<Peak>& peaks, double hz, double withinHz);

// Heads and rows of texts, as they are shown and copied.
struct TextTable {
  std::vector<std::string> heads{};
  std::vector<std::vector<std::string>> rows{};
  // Lines with tabs between the cells, heads first, for a spreadsheet.
  [[nodiscard]] std::string WithTabs() const;
};
[[nodiscard]] TextTable TableOf(const HarmonicReading& reading);
[[nodiscard]] TextTable TableOf(const SidebandReading& reading);

}  // namespace kestrel::analysis
