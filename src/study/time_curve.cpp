// The samples of a time record in the chosen quantity.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "analysis/time_velocity.h"
#include "record/frequency.h"
#include "study/study.h"

namespace kestrel::study {
namespace {

analysis::Refusal NoSamples() {
  return {.title = "A spectrum has lost its time",
          .reason = "The sensor delivered magnitudes; samples cannot be determined from them.",
          .cure = "Capture in the mode Manual Time"};
}

analysis::Refusal Unreadable(std::string reason) {
  return {.title = "No samples can be determined from this record",
          .reason = std::move(reason),
          .cure = "Capture again"};
}

bool IsCode(int code) {
  return code >= 0 && code < 4;
}

}  // namespace

analysis::Told<TimeCurve> SamplesOf(const Record& record, Axis axis) {
  if (record.kind != RecordKind::Time) return NoSamples();
  if (!IsCode(record.settings.option))
    return Unreadable("Its sample-rate option is not one of 0 to 3.");
  if (!IsCode(record.settings.range)) return Unreadable("Its range is not one of the sensor's.");
  TimeCurve curve{.values = analysis::ValuesInG(record, axis, true),
                  .stepS = 1 / SampleFrequency(record.settings.option)};
  if (!std::ranges::all_of(curve.values, [](double value) { return std::isfinite(value); })) {
    return Unreadable("It holds values that are not numbers.");
  }
  return curve;
}

analysis::Told<TimeCurve> Study::TimeCurveOf(Axis axis) const {
  return shown_ ? TimeCurveOf(*shown_->record, axis) : NoSamples();
}

analysis::Told<TimeCurve> Study::TimeCurveOf(const Record& record, Axis axis) const {
  auto told = SamplesOf(record, axis);
  if (!told) return told;
  const TimeCurve& curve = *told;
  if (choice_.timeQuantity == TimeQuantity::Acceleration) return told;
  const double lowest = analysis::LowestVelocityOf(record.settings.option);
  const auto velocity = analysis::VelocityOf(curve.values, record.settings.option,
                                             choice_.timeFromHz > 0 ? choice_.timeFromHz : lowest);
  if (!velocity) return velocity.Why();
  return TimeCurve{velocity->mmPerS, velocity->stepS, velocity->fromHz};
}

}  // namespace kestrel::study
