// Peaks, places and texts of a record.
// SPDX-License-Identifier: MIT
#include "cli/record_report.h"

#include <array>
#include <cmath>
#include <iomanip>

#include "alarms/band_table.h"
#include "cli/number_json.h"
#include "device/alarm_flags.h"
#include "numeric/number_format.h"
#include "record/frequency.h"
#include "record/record_line.h"
#include "record/status_flags.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

struct Peak {
  int index = 0;
  double g = 0;
};

bool IsSpectrum(const Record& record) {
  return record.kind == RecordKind::Spectrum;
}

// The largest magnitude apart from bin 0, which holds the mean; of a time record the sample that is
// farthest from zero.
Peak PeakOf(const Record& record, Axis axis) {
  const auto values = record.Values(axis);
  std::size_t at = IsSpectrum(record) ? 1 : 0;
  for (std::size_t i = at + 1; i < values.size(); ++i) {
    if (std::abs(values[i]) > std::abs(values[at])) at = i;
  }
  return {static_cast<int>(at), values[at]};
}

// The worst that any band of an axis has come to.
const char* AlarmText(const AxisAlarms& alarms) {
  const char* text = "None";
  for (int band = 1; band <= kAlarmBands; ++band) {
    if ((alarms.status >> FaultBit(band) & 1) != 0) return "Fault";
    if ((alarms.status >> WarningBit(band) & 1) != 0) text = "Warning";
  }
  return text;
}

// Frequency of a bin, or time of a sample.
std::string PlaceText(const Record& record, int index) {
  const int option = record.settings.option;
  if (IsSpectrum(record)) return FixedNumber(index * BinWidth(option), 1) + " Hz";
  return FixedNumber(1000 * index / SampleFrequency(option), 3) + " ms";
}

std::string PlainWindow(std::int16_t code) {
  constexpr std::array<const char*, 3> kWindows{"Rectangular", "Hanning", "Flat Top"};
  const auto at = static_cast<std::size_t>(code);
  return at < kWindows.size() ? kWindows[at] : "none (" + std::to_string(code) + ")";
}

std::string PlainRange(std::int16_t code) {
  return "0 to " + GeneralNumber(FullScaleOf(code)) + " g";
}

Json AxisJson(const RecordReport& report, Axis axis) {
  const Record& record = report.record;
  const Peak peak = PeakOf(record, axis);
  Json json{{"peak_g", peak.g}, {IsSpectrum(record) ? "peak_bin" : "peak_sample", peak.index}};
  if (IsSpectrum(record)) json["peak_hz"] = peak.index * BinWidth(record.settings.option);
  json["alarm"] = AlarmText(record.alarms.Of(axis));
  if (report.numbers) AddNumbers(json, *report.numbers, axis);
  Json& data = json["data_g"] = Json::array();
  for (const double value : record.Values(axis)) data.push_back(value);
  return json;
}

void PrintPoints(std::ostream& out, const Record& record) {
  out << (IsSpectrum(record) ? "bin" : "sample") << "\tX, g\tY, g\tZ, g\n";
  for (std::size_t i = 0; i < record.Points(); ++i) {
    out << i;
    for (const Axis axis : kAxes) out << '\t' << GeneralNumber(record.Values(axis)[i]);
    out << '\n';
  }
}

void PrintRecord(std::ostream& out, const RecordReport& report) {
  const Record& record = report.record;
  if (report.number > 0) {
    out << "Capture " << report.number << (report.stopped ? ", stopped" : "") << '\n';
  }
  out << KindAndSettings(record) << '\n';
  for (const Axis axis : kAxes) {
    const Peak peak = PeakOf(record, axis);
    out << "  " << Letter(axis) << "  peak " << std::setw(9) << FixedNumber(peak.g, 4) << " g at "
        << (IsSpectrum(record) ? "bin " : "sample ") << std::setw(3) << peak.index << " ("
        << PlaceText(record, peak.index) << ")";
    if (IsSpectrum(record)) out << ", alarm: " << AlarmText(record.alarms.Of(axis));
    out << '\n';
  }
  out << "  " << ConditionsText(record.conditions);
  if (!report.file.empty()) out << "  file " << report.file.string() << '\n';
  if (report.numbers) PrintNumbers(out, *report.numbers);
  if (report.withData) PrintPoints(out, record);
}

const char* FlagText(StatusFlags status, std::size_t bit) {
  return status.IsSet(static_cast<int>(bit)) ? kStatusFlagTable[bit].whenSet : kStatusFlagClear;
}

}  // namespace

Json RecordJson(const RecordReport& report) {
  const Record& record = report.record;
  const RecordSettings& settings = record.settings;
  Json json;
  if (report.number > 0) json["capture"] = report.number;
  json["type"] = IsSpectrum(record) ? "spectrum" : "time";
  json["time"] = UtcText(record.time);
  json["sample_rate_option"] = settings.option;
  json["sample_rate_hz"] = SampleFrequency(settings.option);
  // A count of 0 means one average.
  if (IsSpectrum(record)) json["averages"] = std::max<int>(settings.averages, 1);
  json["window"] = PlainWindow(settings.window);
  json["range"] = PlainRange(settings.range);
  if (report.numbers) json["numbers"] = NumbersHeadJson(*report.numbers);
  for (const Axis axis : kAxes) json["axes"][std::string(1, Letter(axis))] = AxisJson(report, axis);
  json["supply_v"] = static_cast<double>(record.conditions.supplyV);
  json["temperature_c"] = static_cast<double>(record.conditions.temperatureC);
  json["status"] = StatusJson(record.status);
  json["stopped"] = report.stopped;
  if (!record.IsNew()) json["new"] = false;
  if (!report.file.empty()) json["file"] = report.file.string();
  return json;
}

void WriteRecord(const Output& output, const RecordReport& report) {
  if (output.json) {
    output.Write(RecordJson(report));
  } else {
    PrintRecord(output.out, report);
  }
  output.out.flush();
}

std::string ConditionsText(const Conditions& conditions) {
  const std::string supply = FixedNumber(static_cast<double>(conditions.supplyV), 3);
  const std::string temperature = FixedNumber(static_cast<double>(conditions.temperatureC), 1);
  return "supply " + supply + " V, temperature " + temperature + " °C\n";
}

Json StatusJson(StatusFlags status) {
  Json json = Json::object();
  for (std::size_t bit = 0; bit < kStatusFlags; ++bit) {
    json[kStatusFlagTable[bit].name] = FlagText(status, bit);
  }
  return json;
}

void PrintState(std::ostream& out, StatusFlags status, const AlarmState& alarms) {
  for (std::size_t bit = 0; bit < kStatusFlags; ++bit) {
    out << std::left << std::setw(22) << kStatusFlagTable[bit].name << std::right
        << FlagText(status, bit) << '\n';
  }
  for (const Axis axis : kAxes) {
    const AxisAlarms& state = alarms.Of(axis);
    out << Letter(axis) << " axis: alarm " << AlarmText(state) << ", band "
        << kAlarmBandNumber.Take(state.status) << ", peak " << FixedNumber(alarms.PeakG(axis), 3)
        << " g in bin " << state.peakBin << '\n';
  }
}

}  // namespace kestrel
