// A wide spectrum as text, and as a table.
// SPDX-License-Identifier: MIT
#include "cli/wide/wide_report.h"

#include <algorithm>
#include <iomanip>

#include "analysis/severity.h"
#include "numeric/number_format.h"
#include "numeric/number_texts.h"
#include "record/record_line.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

using analysis::Joined;
using analysis::Quantity;

// Whichever axis could be joined: what is said of segments holds of all.
const Joined* AnyOf(const WideReport& report) {
  for (const auto& told : report.wide.axes) {
    if (told) return &*told;
  }
  return nullptr;
}

const analysis::Spectrum& CaptureOf(const Joined& joined, int option) {
  return *std::ranges::find(joined.captures, option, &analysis::Spectrum::option);
}

void PrintHead(std::ostream& out, const WideReport& report) {
  out << "Wide spectrum " << archive::TextOf(report.set) << (report.stopped ? ", stopped" : "")
      << '\n';
  if (report.wide.records.empty()) return;
  const Record& record = report.wide.records.front();
  out << SettingsName(record.settings) << ", taken "
      << UtcText(std::ranges::min(report.wide.records, {}, &Record::time).time) << '\n';
}

void PrintMissing(std::ostream& out, const WideReport& report) {
  std::vector<int> never;
  std::ranges::copy_if(report.wide.missing, std::back_inserter(never),
                       [&](int option) { return std::ranges::count(report.deleted, option) == 0; });
  if (!never.empty()) out << "Missing: option " << OptionsText(never) << ".\n";
  if (!report.deleted.empty()) {
    out << "Deleted, and can be brought back: option " << OptionsText(report.deleted) << ".\n";
  }
}

// Where the magnitude word is too coarse, neighbours of one and two steps are all that is seen.
int PointsInStepsOf(const Joined& joined, int option) {
  const double step = CaptureOf(joined, option).stepG;
  return static_cast<int>(std::ranges::count_if(joined.points, [&](const auto& point) {
    return point.option == option && point.peakG < 2.5 * step;
  }));
}

void PrintSegments(std::ostream& out, const WideReport& report) {
  const Joined* joined = AnyOf(report);
  if (joined == nullptr) return;
  for (const analysis::Segment& segment : joined->segments) {
    out << "  option " << segment.option << std::setw(11) << FixedNumber(segment.usedFromHz, 1)
        << " to " << std::setw(8) << FixedNumber(segment.usedToHz, 1) << " Hz, bins of "
        << GeneralNumber(analysis::RoundedTo(segment.binWidthHz, 3)) << " Hz\n";
  }
}

void PrintOverlaps(std::ostream& out, const Joined& joined) {
  if (joined.overlaps.empty()) return;
  out << "  overlaps:";
  for (const analysis::Overlap& overlap : joined.overlaps) {
    out << (&overlap == &joined.overlaps.front() ? " " : ", ") << overlap.fineOption << '/'
        << overlap.coarseOption << ' ' << FixedNumber(overlap.differenceDb, 1) << " dB"
        << (overlap.unsteady ? " (not steady)" : "");
  }
  out << '\n';
}

void PrintSeverity(std::ostream& out, const Joined& joined) {
  const auto severity = EstimateSeverity(joined, analysis::SeverityTables().front().rows.front());
  if (!severity) {
    out << "  severity, 10 to 1000 Hz: " << severity.Why().reason << ' ' << severity.Why().cure
        << ".\n";
    return;
  }
  out << "  severity, 10 to 1000 Hz: " << analysis::SignificantText(severity->mmPerS)
      << " mm/s RMS, an estimate" << (severity->uncertain ? ", uncertain: captures disagree" : "")
      << '\n';
}

void PrintLines(std::ostream& out, const Joined& joined, const WideReport& report) {
  analysis::QuantityChoice quantity = report.quantity;
  if (quantity.quantity == Quantity::Density) quantity = {};
  analysis::PeakSettings settings;
  settings.atMost = static_cast<std::size_t>(report.lines);
  for (const analysis::JoinedLine& line : LinesOf(joined, settings)) {
    const analysis::Line& found = line.peak.line;
    const auto value = ValueOf(CaptureOf(joined, line.option), quantity, found);
    const auto hz = analysis::WithBound(found.hz, found.hzBound);
    const auto amplitude = analysis::WithBound(value.value, value.bound.value_or(0));
    out << "  " << std::setw(10) << hz.value << " Hz " << std::left << std::setw(9) << hz.bound
        << std::right << ' ' << std::setw(9) << amplitude.value << ' ' << amplitude.bound
        << (amplitude.bound.empty() ? "" : " ") << UnitOf(quantity) << ", option " << line.option
        << (found.unresolved ? ", unresolved" : "") << '\n';
  }
}

void PrintAxis(std::ostream& out, const WideReport& report, Axis axis) {
  const auto& told = report.wide.axes[Index(axis)];
  out << Letter(axis) << '\n';
  if (!told) {
    out << "  " << AsLine(told.Why()) << '\n';
    return;
  }
  PrintOverlaps(out, *told);
  for (const analysis::Segment& segment : told->segments) {
    const int coarse = PointsInStepsOf(*told, segment.option);
    if (coarse == 0) continue;
    out << "  option " << segment.option << ": " << coarse
        << " points are of two steps of the magnitude word or less; a smaller range tells them "
           "better\n";
  }
  PrintSeverity(out, *told);
  PrintLines(out, *told, report);
}

// The points of the axes side by side: all have the same frequencies.
template <typename Write>
void ForEachPoint(const WideReport& report, const Write& write) {
  const Joined* any = AnyOf(report);
  if (any == nullptr) return;
  std::vector<std::vector<double>> values;
  for (const auto& told : report.wide.axes) {
    values.push_back(told ? CurveOf(*told, report.quantity).values : std::vector<double>{});
  }
  for (std::size_t i = 0; i < any->points.size(); ++i) {
    std::vector<std::string> cells;
    for (const auto& axis : values) cells.push_back(axis.empty() ? "" : GeneralNumber(axis[i]));
    write(any->points[i], cells);
  }
}

std::string Heading(char separator, const std::string& unit) {
  std::string line = std::string("frequency, Hz") + separator + "option";
  for (const Axis axis : kAxes) line += std::string(1, separator) + Letter(axis) + ", " + unit;
  return line;
}

void PrintPoints(std::ostream& out, const WideReport& report) {
  out << Heading('\t', UnitOf(report.quantity)) << '\n';
  ForEachPoint(report, [&](const analysis::JoinedPoint& point, const auto& cells) {
    out << GeneralNumber(point.hz) << '\t' << point.option;
    for (const std::string& cell : cells) out << '\t' << cell;
    out << '\n';
  });
}

void PrintWide(std::ostream& out, const WideReport& report) {
  PrintHead(out, report);
  PrintMissing(out, report);
  PrintSegments(out, report);
  for (const Axis axis : kAxes) PrintAxis(out, report, axis);
  const Joined* any = AnyOf(report);
  if (any != nullptr && !NoiseNotice(*any).empty()) out << NoiseNotice(*any) << '\n';
  for (const std::string& line : report.wide.Disagreements()) {
    out << "Not steady: " << line << ".\n";
  }
  if (report.withData) PrintPoints(out, report);
}

}  // namespace

std::string OptionsText(const std::vector<int>& options) {
  std::string text;
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (i > 0) text += i + 1 == options.size() ? " and " : ", ";
    text += std::to_string(options[i]);
  }
  return text;
}

std::string WideCsv(const WideReport& report) {
  std::string text = "# wide spectrum: " + archive::TextOf(report.set) +
                     "\n# quantity: " + TitleOf(report.quantity) + '\n';
  for (const Record& record : report.wide.records) {
    text += "# option " + std::to_string(record.settings.option) +
            ", taken: " + UtcText(record.time) + '\n';
  }
  if (!report.wide.missing.empty()) {
    text += "# missing: option " + OptionsText(report.wide.missing) + '\n';
  }
  for (const std::string& line : report.wide.Disagreements())
    text += "# not steady: " + line + '\n';
  const Joined* any = AnyOf(report);
  if (any != nullptr && !NoiseNotice(*any).empty()) text += "# " + NoiseNotice(*any) + '\n';
  // A unit has no comma, and no quotes are needed but for these.
  text += "\"frequency, Hz\",option";
  for (const Axis axis : kAxes) {
    text += std::string(",\"") + Letter(axis) + ", " + UnitOf(report.quantity) + '"';
  }
  text += '\n';
  ForEachPoint(report, [&](const analysis::JoinedPoint& point, const auto& cells) {
    text += GeneralNumber(point.hz) + ',' + std::to_string(point.option);
    for (const std::string& cell : cells) text += ',' + cell;
    text += '\n';
  });
  return text;
}

void WriteWide(const Output& output, const WideReport& report) {
  if (output.json) {
    output.Write(WideJson(report));
  } else {
    PrintWide(output.out, report);
  }
  output.out.flush();
}

}  // namespace kestrel
