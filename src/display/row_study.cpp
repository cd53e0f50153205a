// Rows of the waterfall made into studies, and what a map of them is drawn with.
// SPDX-License-Identifier: MIT
#include "display/row_study.h"

#include <cmath>
#include <memory>
#include <utility>

namespace kestrel::study {
namespace {

constexpr double kColourDecades = 1000;
constexpr double kColourDecibels = 60;

// The record itself where it is still at hand: it knows its sensor as well.
RecordPointer RecordOfRow(const Study& whole, std::size_t row) {
  const TimePoint time = whole.Rows().TimeOf(row);
  for (const ShelfEntry& entry : whole.Records().Entries()) {
    const Record& record = *entry.record;
    if (record.time == time && record.kind == RecordKind::Spectrum) return entry.record;
  }
  return std::make_shared<const Record>(whole.Rows().RecordOf(row));
}

}  // namespace

std::optional<std::size_t> RowAt(const analysis::Waterfall& rows, TimePoint time) {
  for (std::size_t row = rows.Rows(); row > 0; --row) {
    if (rows.TimeOf(row - 1) == time) return row - 1;
  }
  return std::nullopt;
}

StudyChoice ChoiceForRow(const StudyChoice& whole) {
  StudyChoice choice = whole;
  choice.view = View::Spectrum;
  choice.shown = {false, false, false};
  choice.shown[Index(choice.focus)] = true;
  choice.stacked = false;
  choice.difference = false;
  choice.extras.clear();
  return choice;
}

Study StudyOfRow(const Study& whole, std::size_t row) {
  Study study([&whole](TimePoint time) { return whole.TimeText(time); },
              ChoiceForRow(whole.Choice()));
  study.Take(RecordOfRow(whole, row));
  const int option = whole.Rows().OptionOf(row);
  if (whole.BandsOf(option, Axis::X) == nullptr) return study;
  SensorBands bands{};
  for (const Axis axis : kAxes) bands[Index(axis)] = *whole.BandsOf(option, axis);
  study.SetSensorBands(option, bands);
  return study;
}

analysis::Told<analysis::QuantityCurve> CurveOfRow(const Study& whole, std::size_t row) {
  const StudyChoice& choice = whole.Choice();
  return analysis::InQuantity(whole.Rows().SpectrumOf(row, choice.focus, choice.meaning),
                              choice.quantity);
}

bool MapsAlike(const StudyChoice& a, const StudyChoice& b) {
  return a.quantity == b.quantity && a.meaning == b.meaning && a.focus == b.focus && a.up == b.up &&
         a.across == b.across && a.unit == b.unit && a.machine.rpm == b.machine.rpm;
}

AxisKind ColourKind(const StudyChoice& choice) {
  if (choice.quantity.quantity == analysis::Quantity::Level) return AxisKind::Decibel;
  return choice.up == Scale::Logarithmic ? AxisKind::Logarithmic : AxisKind::Linear;
}

PlotRange ColourRange(double largest, AxisKind kind) {
  const bool isPositive = std::isfinite(largest) && largest > 0;
  switch (kind) {
    case AxisKind::Decibel:
      return RangeFor(largest - kColourDecibels, largest, kind);
    case AxisKind::Logarithmic:
      return isPositive ? RangeFor(largest / kColourDecades, largest, kind)
                        : PlotRange{1 / kColourDecades, 1};
    case AxisKind::Linear:
      break;
  }
  return isPositive ? RangeFor(0, largest, AxisKind::Linear) : PlotRange{0, 1};
}

ThresholdsAt ThresholdsOf(const PlotScene& scene, double hz) {
  if (scene.panes.empty()) return {};
  for (const PlotBand& band : scene.panes.front().bands) {
    if (hz >= band.from && hz <= band.to) return {band.warning, band.fault};
  }
  return {};
}

std::string GapText(const Study& study, TimePoint from, TimePoint to, const std::string& reason) {
  return "No records " + study.TimeText(from) + " to " + study.TimeText(to) + ": " + reason;
}

}  // namespace kestrel::study
