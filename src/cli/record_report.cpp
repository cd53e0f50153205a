// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/record_report.h"

#include <array>
#include <cmath>
#include <iomanip>

#include "device/rec_info.h"
#include "numeric/number_format.h"
#include "record/capture_data.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

struct Peak {
  int index = 0;
  double g = 0;
};

bool IsSpectrum() {
  return Buff.width == kFftWidth;
}

const RecordArray& DataOf(Axis axis) {
  static const std::array<const RecordArray*, 3> kData{&DataX, &DataY, &DataZ};
  return *kData[Index(axis)];
}

// The largest magnitude apart from bin 0, which holds the mean; of a time record the sample that is
// farthest from zero.
Peak PeakOf(Axis axis) {
  const RecordArray& data = DataOf(axis);
  Peak peak{IsSpectrum() ? 1 : 0, 0};
  peak.g = data(peak.index);
  for (int i = peak.index + 1; i <= Buff.width; ++i) {
    if (std::abs(data(i)) > std::abs(peak.g)) peak = {i, data(i)};
  }
  return peak;
}

char Letter(Axis axis) {
  return static_cast<char>('X' + static_cast<int>(Index(axis)));
}

std::string Trimmed(const std::string& text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

// Frequency of a bin, or time of a sample.
std::string PlaceText(int index) {
  if (IsSpectrum()) return FixedNumber(index * BinWidth(Buff.sampleRateOption), 1) + " Hz";
  return FixedNumber(1000 * index / SampleFrequency(Buff.sampleRateOption), 3) + " ms";
}

Json AxisJson(const HiddenWindow& window, Axis axis, bool withData) {
  const Peak peak = PeakOf(axis);
  Json json{{"peak_g", peak.g}, {IsSpectrum() ? "peak_bin" : "peak_sample", peak.index}};
  if (IsSpectrum()) json["peak_hz"] = peak.index * BinWidth(Buff.sampleRateOption);
  json["alarm"] = Trimmed(window.Alarm(axis).alarm);
  if (withData) {
    Json& data = json["data_g"] = Json::array();
    for (int i = 0; i <= Buff.width; ++i) data.push_back(DataOf(axis)(i));
  }
  return json;
}

Json RecordJson(const HiddenWindow& window, const RecordReport& report) {
  Json json;
  if (report.number > 0) json["capture"] = report.number;
  json["type"] = IsSpectrum() ? "spectrum" : "time";
  json["sample_rate_option"] = Buff.sampleRateOption;
  json["sample_rate_hz"] = SampleFrequency(Buff.sampleRateOption);
  if (IsSpectrum()) json["averages"] = gRecInfo->FFTAverages().BFValue();
  json["window"] = gRecInfo->Windowing().SettingDecription();
  json["range"] = gRecInfo->SignalRange().SettingDecription();
  for (const Axis axis : kAxes) {
    json["axes"][std::string(1, Letter(axis))] = AxisJson(window, axis, report.withData);
  }
  json["supply_v"] = static_cast<double>(CaptSupply);
  json["temperature_c"] = static_cast<double>(CaptTemp);
  json["status"] = StatusJson(window);
  json["stopped"] = report.stopped;
  if (!report.file.empty()) json["file"] = report.file.string();
  return json;
}

void PrintPoints(std::ostream& out) {
  out << (IsSpectrum() ? "bin" : "sample") << "\tX, g\tY, g\tZ, g\n";
  for (int i = 0; i <= Buff.width; ++i) {
    out << i;
    for (const Axis axis : kAxes) out << '\t' << GeneralNumber(DataOf(axis)(i));
    out << '\n';
  }
}

void PrintRecord(std::ostream& out, const HiddenWindow& window, const RecordReport& report) {
  if (report.number > 0) {
    out << "Capture " << report.number << (report.stopped ? ", stopped" : "") << '\n';
  }
  out << (IsSpectrum() ? "Spectrum" : "Time record") << ", "
      << gRecInfo->SignalRange().SettingDecription() << ", "
      << gRecInfo->Windowing().SettingDecription() << ", sample rate option "
      << Buff.sampleRateOption << '\n';
  for (const Axis axis : kAxes) {
    const Peak peak = PeakOf(axis);
    out << "  " << Letter(axis) << "  peak " << std::setw(9) << FixedNumber(peak.g, 4) << " g at "
        << (IsSpectrum() ? "bin " : "sample ") << std::setw(3) << peak.index << " ("
        << PlaceText(peak.index) << ")";
    if (IsSpectrum()) out << ", alarm: " << Trimmed(window.Alarm(axis).alarm);
    out << '\n';
  }
  out << "  " << ConditionsText(static_cast<double>(CaptSupply), static_cast<double>(CaptTemp));
  if (!report.file.empty()) out << "  file " << report.file.string() << '\n';
  if (report.withData) PrintPoints(out);
}

}  // namespace

void WriteRecord(const Output& output, const HiddenWindow& window, const RecordReport& report) {
  if (output.json) {
    output.Write(RecordJson(window, report));
  } else {
    PrintRecord(output.out, window, report);
  }
  output.out.flush();
}

std::string ConditionsText(double supplyV, double temperatureC) {
  const std::string supply = FixedNumber(supplyV, 3);
  const std::string temperature = FixedNumber(temperatureC, 1);
  return "supply " + supply + " V, temperature " + temperature + " C\n";
}

Json StatusJson(const HiddenWindow& window) {
  Json json = Json::object();
  for (const HiddenWindow::Flag& flag : window.Flags()) json[flag.name] = flag.state;
  return json;
}

void PrintStatus(std::ostream& out, const HiddenWindow& window) {
  for (const HiddenWindow::Flag& flag : window.Flags()) {
    out << std::left << std::setw(22) << flag.name << std::right << flag.state << '\n';
  }
  for (const Axis axis : kAxes) {
    const HiddenWindow::AlarmState& state = window.Alarm(axis);
    out << Letter(axis) << " axis: alarm " << Trimmed(state.alarm) << ", band "
        << Trimmed(state.band) << ", peak " << Trimmed(state.peak) << " g in bin "
        << Trimmed(state.peakBin) << '\n';
  }
}

}  // namespace kestrel
