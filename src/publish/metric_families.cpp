// One function a family's values; names, kinds and texts stand beside them.
// SPDX-License-Identifier: MIT
#include "publish/metric_families.h"

#include <utility>

#include "record/utc_time.h"

namespace kestrel::publish {
namespace {

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;

// Families with the labels that all have.
class Families {
 public:
  explicit Families(const Names& names)
      : common_{{"bench", CleanText(names.bench)}, {"sensor", CleanText(names.sensor)}} {}

  Families& Begin(MetricType type, const char* name, const char* help) {
    all_.push_back({name, help, type, {}});
    return *this;
  }
  Families& Add(double value, std::vector<ClientMetric::Label> labels = {}) {
    ClientMetric metric;
    metric.label = common_;
    metric.label.insert(metric.label.end(), labels.begin(), labels.end());
    metric.gauge.value = value;
    metric.counter.value = value;
    all_.back().metric.push_back(std::move(metric));
    return *this;
  }
  void Gauge(const char* name, const char* help, double value) {
    Begin(MetricType::Gauge, name, help).Add(value);
  }
  void Counter(const char* name, const char* help, std::int64_t value) {
    Begin(MetricType::Counter, name, help).Add(static_cast<double>(value));
  }
  void Time(const char* name, const char* help, const std::optional<Moment>& time) {
    if (time) Gauge(name, help, SecondsOf(*time));
  }
  // One value an axis that has it.
  void OfAxes(const char* name, const char* help, const Levels& levels,
              std::optional<double> AxisLevels::*value) {
    Begin(MetricType::Gauge, name, help);
    for (const Axis axis : kAxes) {
      const std::optional<double>& known = levels.axes[Index(axis)].*value;
      if (known) Add(*known, {{"axis", {static_cast<char>('x' + Index(axis))}}});
    }
    if (all_.back().metric.empty()) all_.pop_back();
  }
  [[nodiscard]] std::vector<MetricFamily> Take() { return std::move(all_); }

 private:
  std::vector<ClientMetric::Label> common_;
  std::vector<MetricFamily> all_;
};

void AddLevels(Families& to, const Levels& levels) {
  to.OfAxes("kestrel_rms_g", "RMS acceleration of the latest record in g.", levels,
            &AxisLevels::rmsG);
  to.OfAxes("kestrel_peak_g", "Largest acceleration of the latest record in g peak.", levels,
            &AxisLevels::peakG);
  to.OfAxes("kestrel_top_frequency_hertz", "Frequency of the largest line of the latest record.",
            levels, &AxisLevels::topHz);
  to.OfAxes("kestrel_severity_mm_per_second",
            "Vibration severity of the latest record that was judged, as RMS velocity in mm/s.",
            levels, &AxisLevels::severityMms);
}

void AddStatus(Families& to, const Status& status) {
  to.Gauge("kestrel_up", "1 while captures go on, 0 otherwise.", status.state == State::Up ? 1 : 0);
  to.Time("kestrel_last_record_timestamp_seconds", "When the latest record was taken.",
          status.lastRecord);
  to.Time("kestrel_next_capture_timestamp_seconds", "When the next capture is due.",
          status.nextCapture);
  to.Counter("kestrel_records_total", "Records kept since the start.", status.records);
  to.Counter("kestrel_missed_captures_total",
             "Captures that the plan asked for and that did not come, since the start.",
             status.missed);
  to.Gauge("kestrel_alarms_on", "Alarms that have begun and not ended.", status.alarmsOn);
  to.Gauge("kestrel_incidents_open", "Incidents that have begun and not ended.",
           status.incidentsOpen);
}

void AddPublisher(Families& to, const PublisherState& state) {
  if (state.hasBroker) {
    to.Gauge("kestrel_broker_connected", "1 while the broker is connected, 0 otherwise.",
             state.isConnected ? 1 : 0);
  }
  to.Gauge("kestrel_waiting_alarms",
           "Alarms that have not yet arrived at the broker or the command.",
           static_cast<double>(state.waitingAlarms));
}

}  // namespace

std::vector<MetricFamily> FamiliesOf(const MetricValues& values) {
  Families families(values.names);
  families.Begin(MetricType::Gauge, "kestrel_build_info", "1, with the version of the program.")
      .Add(1, {{"version", CleanText(values.version)}});
  if (values.levels) AddLevels(families, *values.levels);
  if (values.status) AddStatus(families, *values.status);
  families
      .Begin(MetricType::Counter, "kestrel_alarm_events_total",
             "Begins and ends of alarms since the start.")
      .Add(static_cast<double>(values.alarmsBegun), {{"event", NameOf(AlarmEvent::Begin)}})
      .Add(static_cast<double>(values.alarmsEnded), {{"event", NameOf(AlarmEvent::End)}});
  AddPublisher(families, values.publisher);
  return families.Take();
}

}  // namespace kestrel::publish
