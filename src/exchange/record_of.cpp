// How an imported record becomes one as the sensor gives them: words, range and rate, all proved.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "exchange/imported.h"
#include "exchange/texts.h"
#include "record/frequency.h"

namespace kestrel::exchange {
namespace {

constexpr double kWordError = 1e-6;  // of a word, that digits of a file may leave
constexpr double kStepError = 1e-5;  // relative; files hold six digits of a step
constexpr double kLargestWord = 65535;

Fault Not(std::string what) {
  return {.what = std::move(what)};
}

// Whether the traces are X, Y and Z of a record; why not.
std::optional<Fault> WhyNoRecord(const ImportedRecord& imported) {
  const std::size_t points = imported.kind == RecordKind::Time ? kTimeWidth + 1 : kFftWidth + 1;
  if (imported.traces.size() != kAxes.size()) {
    return Not("A record has three axes, and here are " + std::to_string(imported.traces.size()) +
               " traces.");
  }
  for (const Axis axis : kAxes) {
    const ImportedTrace& trace = imported.traces[Index(axis)];
    if (trace.axis && (*trace.axis != axis || trace.reversed)) {
      return Not("The traces of a record are +X, +Y and +Z, in this order.");
    }
    if (trace.values.size() != points) {
      return Not("A record of this kind has " + std::to_string(points) + " points, and trace " +
                 std::string(1, Letter(axis)) + " has " + std::to_string(trace.values.size()) +
                 ".");
    }
  }
  if (!imported.amplitudes) {
    return Not("The values are not amplitudes (" + imported.quantity + ").");
  }
  if (imported.first && *imported.first != 0) {
    return Not("The first value is at " + ExactText(*imported.first) + ", and not at 0.");
  }
  return std::nullopt;
}

double StepAt(RecordKind kind, int option) {
  return kind == RecordKind::Spectrum ? BinWidth(option) : 1 / SampleFrequency(option);
}

// The option whose step the file has.
std::optional<std::int16_t> OptionOf(const ImportedRecord& imported) {
  for (std::int16_t option = 0; imported.step && option <= 3; ++option) {
    const double step = StepAt(imported.kind, option);
    if (std::abs(*imported.step - step) <= kStepError * step) return option;
  }
  return std::nullopt;
}

Exchanged<RecordSettings> SettingsOf(const ImportedRecord& imported, const Said& said) {
  if (imported.settings) return *imported.settings;
  const auto option = imported.step ? OptionOf(imported) : said.option;
  if (!option && imported.step) {
    return Not("The values are " + ExactText(*imported.step) +
               (imported.kind == RecordKind::Time ? " s" : " Hz") +
               " apart, at which the sensor takes no records.");
  }
  if (!option) return Not("The sample-rate option has to be given.");
  if (!said.range) return Not("The range has to be given.");
  const bool needsWindow = imported.kind == RecordKind::Spectrum;
  if (needsWindow && !said.window) return Not("The window has to be given.");
  const double averages = std::clamp(imported.averages.value_or(0), 0.0, 511.0);
  const int info = *option << 14 | said.window.value_or(0) << 12 | *said.range << 10 |
                   static_cast<int>(averages);
  return SettingsFromWords(info, 0);
}

// The factor from a value to a word.
Exchanged<double> WordsAUnit(const ImportedRecord& imported, const Said& said, double lsb) {
  if (imported.gPerUnit) return *imported.gPerUnit / lsb;
  if (said.words && *said.words) return 1.0;
  if (said.words && imported.unit.empty()) return 1 / lsb;
  return Not(imported.unit.empty()
                 ? "It has to be said whether the values are words of the sensor or g."
                 : "The values are in " + Shown(imported.unit) +
                       ", which is not an acceleration in g.");
}

std::optional<Fault> TakeWords(Record& record, const ImportedRecord& imported, double factor) {
  const double least = record.kind == RecordKind::Time ? -32768 : 0;
  for (const Axis axis : kAxes) {
    const std::vector<double>& values = imported.traces[Index(axis)].values;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const double word = std::round(values[i] * factor);
      const bool isWord = std::abs(values[i] * factor - word) <= kWordError && word >= least &&
                          word <= (least < 0 ? 32767 : kLargestWord);
      if (!isWord) {  // nor is what is no number, which an endless factor makes of 0
        return Not(std::string(1, Letter(axis)) + " of point " + std::to_string(i) + " is " +
                   ExactText(values[i]) + ", which is not a word of the sensor at this range.");
      }
      record.Of(axis).raw(static_cast<int>(i)) = word + 0.0;  // no negative zero
    }
  }
  return std::nullopt;
}

}  // namespace

Exchanged<Record> RecordOf(const ImportedRecord& imported, const Said& said) {
  if (auto fault = WhyNoRecord(imported)) return *std::move(fault);
  const auto settings = SettingsOf(imported, said);
  if (!settings) return settings.Why();
  Record record;
  record.kind = imported.kind;
  record.settings = *settings;
  const std::int16_t range = imported.scaledRange.value_or(settings->range);
  const double lsb = imported.lsbWeight.value_or(LsbWeightOf(range, record.kind));
  const auto factor = WordsAUnit(imported, said, lsb);
  if (!factor) return factor.Why();
  if (auto fault = TakeWords(record, imported, *factor)) return *std::move(fault);
  record = Rescaled(std::move(record), range);
  record.lsbWeight = lsb;
  for (AxisRecord& axis : record.axes) {
    for (int i = 0; i <= record.Width(); ++i) axis.data(i) = axis.raw(i) * lsb;
  }
  record.conditions = {.supplyV = imported.supplyV.value_or(0),
                       .temperatureC = imported.temperatureC.value_or(0),
                       .recordCount = imported.recordCount.value_or(0)};
  if (imported.status) record.status = {.word = *imported.status, .known = true};
  if (imported.time) record.time = *imported.time;
  return record;
}

}  // namespace kestrel::exchange
