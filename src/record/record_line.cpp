// The words in which a record is described.
// SPDX-License-Identifier: MIT
#include "record/record_line.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "numeric/number_format.h"
#include "record/frequency.h"
#include "record/status_flags.h"

namespace kestrel {
namespace {

constexpr std::array<const char*, 3> kWindows{"Rectangular", "Hanning", "Flat top"};
constexpr double kSignificant = 4;

std::string RangeText(std::int16_t range) {
  return "0 to " + GeneralNumber(FullScaleOf(range)) + " g";
}

std::string WindowText(std::int16_t window) {
  const auto at = static_cast<std::size_t>(window);
  return at < kWindows.size() ? kWindows[at] : "window code " + std::to_string(window);
}

// The sensor takes at least one spectrum.
std::string AveragesText(std::int16_t averages) {
  return averages <= 1 ? "1 average" : std::to_string(averages) + " averages";
}

// Four significant digits of a value above 0.
std::string FourDigits(double value) {
  const double whole = std::floor(std::log10(value)) + 1;
  return FixedNumber(value, static_cast<int>(std::max(0.0, kSignificant - whole)));
}

std::string IntervalText(double seconds) {
  return seconds < 1e-3 ? FourDigits(seconds * 1e6) + " µs" : FourDigits(seconds * 1e3) + " ms";
}

std::string KindText(RecordKind kind) {
  return kind == RecordKind::Time ? "Time record" : "Spectrum";
}

// Window and averages belong to spectra.
std::string SettingsText(const Record& record) {
  const std::string text = record.kind == RecordKind::Spectrum ? SettingsName(record.settings)
                                                               : RangeText(record.settings.range);
  return text + ", option " + std::to_string(record.settings.option) + ", " + StepText(record);
}

}  // namespace

std::string SettingsName(const RecordSettings& settings) {
  return RangeText(settings.range) + ", " + WindowText(settings.window) + ", " +
         AveragesText(settings.averages);
}

std::string KindAndSettings(const Record& record) {
  return KindText(record.kind) + ", " + SettingsText(record);
}

std::string StepText(const Record& record) {
  const int option = record.settings.option;
  if (record.kind == RecordKind::Time) return "Δt " + IntervalText(1 / SampleFrequency(option));
  return "Δf " + FourDigits(BinWidth(option)) + " Hz";
}

std::string FlagsText(const StatusFlags& status) {
  std::string text;
  for (std::size_t bit = 0; bit < kStatusFlagTable.size(); ++bit) {
    if (!status.IsSet(static_cast<int>(bit))) continue;
    text += (text.empty() ? "" : ", ") + std::string(kStatusFlagTable[bit].name);
  }
  return text.empty() ? "no flag set" : text;
}

std::string SensorText(const SensorIdentity& sensor) {
  std::string text = std::to_string(sensor.product);
  if (sensor.simulated) text += ", simulated";
  if (!sensor.interface.empty()) text += ", " + sensor.interface;
  if (!sensor.adapter.empty()) text += " (" + sensor.adapter + ")";
  return text;
}

std::string RangeName(std::int16_t range) {
  return "0 to " + GeneralNumber(FullScaleOf(range)) + "g";
}

std::string RecordLine(const Record& record, const std::string& localTime) {
  if (!record.Taken()) return "";
  std::string line = KindText(record.kind) + ", " + SettingsText(record);
  if (!localTime.empty()) line += ", " + localTime;
  return line;
}

std::vector<std::string> RecordDetails(const Record& record, const std::string& localTime) {
  if (!record.Taken()) return {};
  std::vector<std::string> lines{RecordLine(record, localTime)};
  lines.push_back((record.kind == RecordKind::Time ? "Samples 0 to " : "Bins 0 to ") +
                  std::to_string(record.Width()) + ", " + GeneralNumber(record.lsbWeight) +
                  " g a step");
  const auto number = std::to_string(record.conditions.recordCount);
  lines.push_back(record.origin.stored ? "Stored record " + std::to_string(*record.origin.stored)
                                       : "Record count " + number);
  lines.push_back("Supply " + FixedNumber(static_cast<double>(record.conditions.supplyV), 3) +
                  " V, temperature " +
                  FixedNumber(static_cast<double>(record.conditions.temperatureC), 1) + " °C");
  if (record.status.known) lines.push_back("Status: " + FlagsText(record.status));
  lines.push_back("Record information " + Hex(record.settings.recInfo) + " hexadecimal");
  if (record.sensor.product != 0) lines.push_back("Sensor " + SensorText(record.sensor));
  return lines;
}

}  // namespace kestrel
