// The samples of a time record in the chosen quantity.
// SPDX-License-Identifier: MIT
#include "analysis/time_velocity.h"
#include "record/frequency.h"
#include "study/study.h"

namespace kestrel::study {
namespace {

analysis::Refusal NoSamples() {
  return {.title = "A spectrum has lost its time",
          .reason = "The sensor delivered magnitudes; samples cannot be told from them.",
          .cure = "Capture in the mode Manual Time"};
}

}  // namespace

analysis::Told<TimeCurve> Study::TimeCurveOf(Axis axis) const {
  if (!shown_ || shown_->record->kind != RecordKind::Time) return NoSamples();
  const Record& record = *shown_->record;
  TimeCurve curve{.values = analysis::ValuesInG(record, axis, true),
                  .stepS = 1 / SampleFrequency(record.settings.option)};
  if (choice_.timeQuantity == TimeQuantity::Acceleration) return curve;
  const double lowest = analysis::LowestVelocityOf(record.settings.option);
  const auto velocity = analysis::VelocityOf(curve.values, record.settings.option,
                                             choice_.timeFromHz > 0 ? choice_.timeFromHz : lowest);
  if (!velocity) return velocity.Why();
  return TimeCurve{velocity->mmPerS, velocity->stepS, velocity->fromHz};
}

}  // namespace kestrel::study
