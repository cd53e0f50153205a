// Trends and baselines of an archive in Python.
// SPDX-License-Identifier: MIT
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>
#include <optional>

#include "archive/trend.h"
#include "baseline/workbench.h"
#include "cli/archive/baseline_report.h"
#include "python/archive_holder.h"
#include "python/band_values.h"
#include "python/bindings.h"
#include "python/interpreter_lock.h"
#include "python/raise.h"
#include "python/views.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

// Asks for signals on the way; what a handler raised is raised at the end.
class Signals {
 public:
  explicit Signals(const HeldArchive& held) : held_(held) {}
  // False where one ended the work, or the program ends.
  bool GoOn() {
    if (held_.IsEnding()) return false;
    const Locked locked;
    if (PyErr_CheckSignals() == 0) return true;
    exception_ = py::error_already_set();
    return false;
  }
  void Raise() const {
    if (exception_) throw py::error_already_set(*exception_);
  }

 private:
  const HeldArchive& held_;
  std::optional<py::error_already_set> exception_;
};

// is_time, option, window, then the columns: nanoseconds, values, ids, alarms.
py::tuple Told(const archive::TrendSeries& series) {
  std::vector<std::int64_t> times;
  std::vector<double> values;
  std::vector<std::int64_t> ids;
  std::vector<std::uint8_t> alarms;
  for (const archive::TrendPoint& point : series.points) {
    times.push_back(NanosecondsOf(point.time));
    values.push_back(point.value);
    ids.push_back(point.id);
    alarms.push_back(point.alarm ? 1 : 0);
  }
  return py::make_tuple(series.kind == RecordKind::Time, series.option, series.window,
                        Taken(std::move(times)), Taken(std::move(values)), Taken(std::move(ids)),
                        Taken(std::move(alarms)));
}

archive::TrendChoice ChoiceOf(const py::dict& told) {
  return {.of = static_cast<archive::TrendOf>(told["of"].cast<int>()),
          .axis = AxisOf(told["axis"].cast<int>()),
          .fromHz = told["low"].cast<double>(),
          .toHz = told["high"].cast<double>(),
          .nearHz = told["near"].cast<double>(),
          .withinHz = told["within"].cast<double>()};
}

// unit, how many records are refused, why, series.
py::tuple TrendOf(HeldArchive& held, const py::dict& filter, const py::dict& choice) {
  const archive::Filter which = FilterOf(filter);
  const archive::TrendChoice what = ChoiceOf(choice);
  Signals signals(held);
  HeldArchive::Use use(held);
  const archive::Trend trend = use.Do([&](archive::Archive& archive) {
    return TrendFor(archive, which, what, [&](auto, auto) { return signals.GoOn(); });
  });
  signals.Raise();
  py::list all;
  for (const auto& series : trend.series) all.append(Told(series));
  return py::make_tuple(trend.unit, trend.refused, trend.refusal, all);
}

baseline::Part PartOf(const py::dict& told, baseline::Verdict verdict) {
  baseline::Part part{.verdict = verdict, .filter = FilterOf(told)};
  part.name = part.filter.tag;
  if (told.contains("ids")) part.ids = told["ids"].cast<std::vector<std::int64_t>>();
  if (told.contains("every")) part.every = std::chrono::seconds(told["every"].cast<int>());
  return part;
}

baseline::Rule RuleOf(const py::dict& told) {
  baseline::Rule rule;
  if (told.contains("sigma")) rule.k = told["sigma"].cast<double>();
  if (told.contains("percentile")) {
    const bool is95 = told["percentile"].cast<int>() == 95;
    rule.kind = is95 ? baseline::RuleKind::Limit95 : baseline::RuleKind::Limit99;
  }
  if (told.contains("at_least")) rule.atLeastDb = told["at_least"].cast<double>();
  if (told.contains("fault_above")) rule.faultAboveDb = told["fault_above"].cast<double>();
  return rule;
}

void RefuseTooFew(const baseline::Sets& sets, const baseline::Rule& rule) {
  if (sets.good.empty()) Raise("CannotTell", "No record is left that is known to be good.");
  const std::string shortage = ShortageText(rule, sets.good.size());
  if (!shortage.empty()) Raise("CannotTell", shortage);
}

// The baseline as JSON and the bands with what is proposed.
py::tuple BaselineOf(HeldArchive& held, const py::dict& good, const py::object& bad,
                     const BandValues& rows, const py::dict& told) {
  std::vector<baseline::Part> parts{PartOf(good, baseline::Verdict::Good)};
  if (!bad.is_none()) parts.push_back(PartOf(bad.cast<py::dict>(), baseline::Verdict::Bad));
  Signals signals(held);
  HeldArchive::Use use(held);
  auto loaded = use.Do([&](archive::Archive& archive) {
    return baseline::Load(archive, SetsOf(archive, parts),
                          [&](auto, auto) { return signals.GoOn(); });
  });
  signals.Raise();
  const baseline::Rule rule = RuleOf(told);
  RefuseTooFew(loaded.sets, rule);
  const baseline::Settings settings = loaded.sets.settings;
  const BandTable table = TableOf(rows);
  baseline::Bands bands = baseline::BandsOf(table, settings.option);
  if (std::ranges::none_of(bands, &baseline::Band::IsUsed)) {
    bands = baseline::UsualBands(settings.window);
  }
  const baseline::Workbench bench(std::move(loaded.sets),
                                  std::make_shared<baseline::Spectra>(std::move(loaded.spectra)),
                                  bands, baseline::LevelKind::BandPeak, rule);
  return py::make_tuple(BaselineJson(bench).dump(),
                        ValuesOf(WithBands(table, settings.option, bench.Result())));
}

}  // namespace

void BindTrend(py::module_& module) {
  module.def("trend", &TrendOf);
  module.def("baseline", &BaselineOf);
}

}  // namespace kestrel::python
