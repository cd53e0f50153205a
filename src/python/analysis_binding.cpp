// What a record means, in Python: peaks, levels, quantities and velocity over time.
// SPDX-License-Identifier: MIT
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "analysis/time_velocity.h"
#include "cli/number_json.h"
#include "cli/number_report.h"
#include "numeric/number_texts.h"
#include "python/band_values.h"
#include "python/bindings.h"
#include "python/interpreter_lock.h"
#include "python/raise.h"
#include "python/views.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

using analysis::QuantityChoice;
using analysis::QuantityLevel;
using analysis::QuantityPeak;
using analysis::Told;

// Codes of the package: quantity and amplitude, the second none where the usual one is meant.
QuantityOptions OptionsOf(int quantity, std::optional<int> amplitude) {
  QuantityOptions options;
  options.quantity = static_cast<analysis::Quantity>(quantity);
  if (amplitude) options.amplitude = static_cast<analysis::Amplitude>(*amplitude);
  return options;
}

py::object OrNone(const std::optional<double>& value) {
  return value ? py::object(py::float_(*value)) : py::none();
}

py::dict PeakOf(const QuantityPeak& peak, const std::string& unit) {
  const auto& line = peak.peak.line;
  py::dict told;
  told["frequency"] = line.hz;
  told["frequency_uncertainty"] = line.hzBound;
  told["amplitude"] = peak.value.value;
  told["uncertainty"] = OrNone(peak.value.bound);
  told["unit"] = unit;
  told["unresolved"] = line.unresolved;
  told["bin"] = peak.peak.bin;
  told["noise_g"] = peak.peak.noiseG;
  return told;
}

py::dict LevelOf(const QuantityLevel& level) {
  py::dict told;
  told["rms"] = level.rms;
  told["unit"] = level.rmsUnit;
  told["from_hz"] = level.fromHz;
  told["to_hz"] = level.toHz;
  told["whole"] = level.whole;
  told["largest"] = level.largest;
  told["largest_unit"] = level.largestUnit;
  told["largest_hz"] = level.largestHz;
  told["edge_share"] = level.edgeShare;
  return told;
}

py::dict ShapeOf(const ShapeNumbers& shape) {
  py::dict told;
  told["rms"] = shape.levels.rmsG;
  told["unit"] = shape.unit + " RMS";
  told["peak"] = shape.levels.peakG;
  told["peak_unit"] = shape.unit + " peak";
  told["mean"] = shape.levels.meanG;
  told["crest_factor"] = OrNone(shape.levels.crest);
  told["kurtosis"] = OrNone(shape.levels.kurtosis);
  told["from_hz"] = shape.fromHz;
  return told;
}

NumberReport ReportOf(const Record& record, int peaks, bool levels, const QuantityOptions& options,
                      const std::optional<BandValues>& bands) {
  std::optional<BandTable> table;
  if (bands) table = TableOf(*bands);
  const Unlocked unlocked;
  return NumbersOf(record, NumberChoice(peaks, levels, options), table);
}

// Full numbers, and beside them the axis as the command line tells it.
py::tuple Peaks(const Record& record, int axis, int most, int quantity,
                std::optional<int> amplitude) {
  const QuantityOptions options = OptionsOf(quantity, amplitude);
  const NumberReport report = ReportOf(record, most, false, options, {});
  const auto& peaks = report.axes.at(static_cast<std::size_t>(axis)).peaks;
  py::list all;
  for (const QuantityPeak& peak : Got(*peaks)) {
    all.append(PeakOf(peak, analysis::UnitOf(options.Choice())));
  }
  nlohmann::ordered_json told;
  AddNumbers(told, report, AxisOf(axis));
  return py::make_tuple(all, told.dump());
}

py::tuple Levels(const Record& record, int axis, int quantity, std::optional<int> amplitude,
                 const std::optional<BandValues>& bands) {
  const NumberReport report = ReportOf(record, 0, true, OptionsOf(quantity, amplitude), bands);
  const AxisNumbers& numbers = report.axes.at(static_cast<std::size_t>(axis));
  nlohmann::ordered_json told;
  AddNumbers(told, report, AxisOf(axis));
  const py::dict level =
      numbers.shape ? ShapeOf(Got(*numbers.shape)) : LevelOf(Got(*numbers.overall));
  return py::make_tuple(level, told.dump());
}

// values, floor, first valid bin, title, unit, frequencies.
py::tuple InQuantity(const Record& record, int axis, int quantity, std::optional<int> amplitude,
                     double lowestHz) {
  QuantityChoice choice = OptionsOf(quantity, amplitude).Choice();
  choice.lowestHz = lowestHz;
  const auto spectrum = analysis::SpectrumOf(record, AxisOf(axis), {.ownRange = true});
  const auto told = analysis::InQuantity(Got(spectrum), choice);
  const analysis::QuantityCurve& curve = Got(told);
  std::vector<double> places(curve.values.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    places[i] = spectrum->FrequencyOf(static_cast<double>(i));
  }
  return py::make_tuple(Taken(std::vector(curve.values)), Taken(std::vector(curve.floor)),
                        curve.firstValid, curve.title, curve.unit, Taken(std::move(places)));
}

// mm/s of each sample, Hz from which it holds, mm/s RMS.
py::tuple Velocity(const Record& record, int axis, std::optional<double> fromHz) {
  const int option = record.settings.option;
  const auto samples = analysis::ValuesInG(record, AxisOf(axis), true);
  const auto velocity =
      analysis::VelocityOf(samples, option, fromHz.value_or(analysis::LowestVelocityOf(option)));
  const analysis::VelocityRecord& told = Got(velocity);
  return py::make_tuple(Taken(std::vector(told.mmPerS)), told.fromHz, told.rms);
}

}  // namespace

void BindAnalysis(py::module_& module) {
  module.def("peaks", &Peaks);
  module.def("levels", &Levels);
  module.def("in_quantity", &InQuantity);
  module.def("velocity", &Velocity);
  BindJoined(module);
}

}  // namespace kestrel::python
