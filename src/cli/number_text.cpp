// Peaks and levels as lines for people: digits as far as their bounds carry them.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <iomanip>

#include "cli/number_report.h"
#include "numeric/number_texts.h"

namespace kestrel {
namespace {

using analysis::HertzText;
using analysis::NumberText;
using analysis::QuantityLevel;
using analysis::QuantityPeak;
using analysis::SignificantText;

constexpr int kLevelDigits = 3;
constexpr double kEdgeTold = 0.05;  // of the power: below, the level is hardly wrong

std::string BoundedBy(const std::string& value, const std::string& bound) {
  return bound.empty() ? value : value + " " + bound;
}

std::string PeakText(const QuantityPeak& peak, const std::string& unit) {
  const auto& line = peak.peak.line;
  const auto hz = analysis::WithBound(line.hz, line.hzBound);
  const auto value = analysis::WithBound(peak.value.value, peak.value.bound.value_or(0));
  const std::string amplitude = peak.value.bound ? BoundedBy(value.value, value.bound)
                                                 : SignificantText(peak.value.value, kLevelDigits);
  return BoundedBy(hz.value, hz.bound) + " Hz, " + amplitude + " " + unit +
         (line.unresolved ? ", unresolved: the bin's own value" : "");
}

std::string LevelText(const QuantityLevel& level) {
  std::string text = SignificantText(level.rms, kLevelDigits) + " " + level.rmsUnit +
                     (level.whole ? "" : " in part of it") + " from " + HertzText(level.fromHz) +
                     " to " + HertzText(level.toHz);
  if (level.largestHz > 0) {
    text += ", largest " + SignificantText(level.largest, kLevelDigits) + " " + level.largestUnit +
            " at " + HertzText(level.largestHz);
  }
  if (level.edgeShare >= kEdgeTold) {
    text += "; " + NumberText(100 * level.edgeShare, 0) +
            " % of its power is a line at the lower end, told in part; higher options reach lower";
  }
  return text;
}

std::string FactorText(const char* name, const std::optional<double>& value,
                       const analysis::StatisticalBand& noise) {
  return std::string(", ") + name + " " + (value ? NumberText(*value, 2) : analysis::kNoNumber) +
         " (noise: " + NumberText(noise.low, 1) + " to " + NumberText(noise.high, 1) + ")";
}

std::string ShapeText(const ShapeNumbers& shape) {
  const auto& levels = shape.levels;
  const auto in = [&](double value) {
    return SignificantText(value, kLevelDigits) + " " + shape.unit;
  };
  std::string text = "RMS " + in(levels.rmsG) + ", peak " + in(levels.peakG);
  if (shape.fromHz > 0) text += ", from " + HertzText(shape.fromHz);
  return text + FactorText("crest factor", levels.crest, analysis::kCrestOfNoise) +
         FactorText("kurtosis", levels.kurtosis, analysis::kKurtosisOfNoise);
}

std::string BandText(const BandNumbers& band) {
  std::string text = "band " + std::to_string(band.limits.number);
  if (!band.level) return text + " is not used";
  text += ": ";
  text += *band.level ? LevelText(**band.level) : AsLine(band.level->Why());
  const std::string state = analysis::TextOf(band.limits);
  return text + (state.empty() ? "; no threshold" : "; " + state);
}

// The lines of each axis; one without an axis where all three say the same.
class Lines {
 public:
  void Add(Axis axis, const std::string& text) { of_[Index(axis)].push_back(text); }
  void Print(std::ostream& out) const {
    const bool allSame = !of_[0].empty() && of_[0] == of_[1] && of_[1] == of_[2];
    for (const Axis axis : kAxes) {
      for (const std::string& line : of_[Index(axis)]) {
        out << "  " << (allSame ? "X, Y, Z" : std::string(1, Letter(axis))) << "  " << line << '\n';
      }
      if (allSame) return;
    }
  }

 private:
  std::array<std::vector<std::string>, 3> of_;
};

Lines PeakLines(const NumberReport& report) {
  Lines lines;
  for (const Axis axis : kAxes) {
    const auto& peaks = *report.axes[Index(axis)].peaks;
    if (!peaks) {
      lines.Add(axis, AsLine(peaks.Why()));
      continue;
    }
    if (peaks->empty()) lines.Add(axis, "no peak stands out of the noise");
    for (const QuantityPeak& peak : *peaks) {
      lines.Add(axis, PeakText(peak, analysis::UnitOf(report.quantity)));
    }
  }
  return lines;
}

Lines LevelLines(const NumberReport& report) {
  Lines lines;
  for (const Axis axis : kAxes) {
    const AxisNumbers& numbers = report.axes[Index(axis)];
    if (const auto& overall = numbers.overall) {
      lines.Add(axis, *overall ? "overall: " + LevelText(**overall) : AsLine(overall->Why()));
    }
    if (const auto& shape = numbers.shape) {
      lines.Add(axis, *shape ? ShapeText(**shape) : AsLine(shape->Why()));
    }
    const bool anyUsed = std::ranges::any_of(
        numbers.bands, [](const BandNumbers& band) { return band.level.has_value(); });
    if (!anyUsed && !numbers.bands.empty()) lines.Add(axis, "no alarm band is used");
    for (const BandNumbers& band : numbers.bands) {
      if (anyUsed) lines.Add(axis, BandText(band));
    }
  }
  return lines;
}

bool HasLevels(const AxisNumbers& numbers) {
  return numbers.overall || numbers.shape;
}

}  // namespace

void PrintNumbers(std::ostream& out, const NumberReport& report) {
  for (const std::string& notice : report.notices) out << "Note: " << notice << '\n';
  if (report.axes[0].peaks) {
    out << "Peaks: " << analysis::TitleOf(report.quantity) << ", " << report.window
        << (report.ownTransform ? " transform of the record" : "") << ", from "
        << HertzText(report.validFromHz) << ":\n";
    PeakLines(report).Print(out);
  }
  if (HasLevels(report.axes[0])) {
    out << "Levels:\n";
    LevelLines(report).Print(out);
  }
}

}  // namespace kestrel
