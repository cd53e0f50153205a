// How a record is judged, and the words for it.
// SPDX-License-Identifier: MIT
#include "record/record_notices.h"

#include <algorithm>
#include <array>

#include "numeric/number_format.h"
#include "record/record_line.h"

namespace kestrel {
namespace {

constexpr std::int16_t kRanges = 4;
constexpr double kTopMagnitude = 65535;
constexpr double kTopSample = 32767;
constexpr double kBottomSample = -32768;
constexpr double kErasedSample = -1;  // 0xFFFF as two's complement

bool AllAre(const Record& record, double word) {
  return std::ranges::all_of(record.axes, [&](const AxisRecord& axis) {
    return std::ranges::all_of(axis.raw.First(record.Points()),
                               [word](double value) { return value == word; });
  });
}

// The range by which the record was scaled; where its weight is that of none, the weight.
std::string ScaleName(const Record& record) {
  for (std::int16_t range = 0; range < kRanges; ++range) {
    if (record.lsbWeight == LsbWeightOf(range, record.kind)) return "for " + RangeName(range);
  }
  return "by " + GeneralNumber(record.lsbWeight) + " g a step";
}

RecordNotice NotNew(const Record& record) {
  const bool isRepeated = record.origin.countBefore.has_value();
  return {.kind = NoticeKind::NotNew,
          .what = "The capture was stopped before data were ready",
          .means = isRepeated ? "These are the data of the record before."
                              : "These are the data of an earlier record, or none.",
          .cure = Cure::CaptureAgain,
          .cureText = "Capture again"};
}

RecordNotice Empty(const Record& record) {
  if (!record.origin.stored) {
    return {.kind = NoticeKind::Empty,
            .what = "The sensor's buffers are empty",
            .means = "All points are the same blank word, not a measurement.",
            .cure = Cure::CaptureAgain,
            .cureText = "Capture again"};
  }
  return {.kind = NoticeKind::Empty,
          .what = "Record " + std::to_string(*record.origin.stored) + " of the sensor is empty",
          .means = "Nothing has been stored there; the points are not a measurement.",
          .cure = Cure::None,
          .cureText = ""};
}

// How far the values shown are from the true ones.
std::string ScaleError(const Record& record) {
  if (record.lsbWeight == 0) return "All values read as zero.";
  const double factor = LsbWeightOf(record.settings.range, record.kind) / record.lsbWeight;
  const std::string times = FixedNumber(factor > 1 ? factor : 1 / factor, 2);
  return "Every value shown is " + times + " times too " + (factor > 1 ? "small." : "large.");
}

RecordNotice WrongScale(const Record& record) {
  const std::string own = RangeName(record.settings.range);
  return {.kind = NoticeKind::WrongScale,
          .what = "Taken at " + own + ", scaled " + ScaleName(record),
          .means = ScaleError(record),
          .cure = Cure::UseOwnRange,
          .cureText = "Use " + own};
}

RecordNotice Clipped(const Record& record, const std::string& axes) {
  const bool isHighest = record.settings.range == kRanges - 1;
  return {.kind = NoticeKind::Clipped,
          .what = "Clipped at full scale: " + axes,
          .means = "The true values are higher than shown.",
          .cure = isHighest ? Cure::None : Cure::UseHigherRange,
          .cureText =
              isHighest ? ""
                        : "Use " + RangeName(static_cast<std::int16_t>(record.settings.range + 1))};
}

std::string ClippedAxes(const Record& record) {
  std::string axes;
  for (const Axis axis : kAxes) {
    const int points = ClippedPoints(record, axis);
    if (points == 0) continue;
    axes += axes.empty() ? "" : ", ";
    axes += Letter(axis);
    axes += " (" + std::to_string(points) + (points == 1 ? " point)" : " points)");
  }
  return axes;
}

RecordNotice SensorLost() {
  return {.kind = NoticeKind::SensorLost,
          .what = "The sensor was lost since",
          .means = "The record is as it was read; nothing newer can be.",
          .cure = Cure::SelectInterface,
          .cureText = "Select adapter"};
}

}  // namespace

std::vector<RecordNotice> RecordNotices(const Record& record, const RecordPresent& present) {
  if (!record.Taken()) return {};
  std::vector<RecordNotice> notices;
  if (!record.IsNew()) notices.push_back(NotNew(record));
  const bool isEmpty = IsEmpty(record);
  if (isEmpty) notices.push_back(Empty(record));
  if (!isEmpty && record.lsbWeight != LsbWeightOf(record.settings.range, record.kind)) {
    notices.push_back(WrongScale(record));
  }
  const std::string clipped = isEmpty ? "" : ClippedAxes(record);
  if (!clipped.empty()) notices.push_back(Clipped(record, clipped));
  if (present.sensorLost) notices.push_back(SensorLost());
  return notices;
}

bool IsEmpty(const Record& record) {
  if (AllAre(record, 0)) return true;
  return AllAre(record, record.kind == RecordKind::Time ? kErasedSample : kTopMagnitude);
}

int ClippedPoints(const Record& record, Axis axis) {
  const bool isTime = record.kind == RecordKind::Time;
  return static_cast<int>(
      std::ranges::count_if(record.Of(axis).raw.First(record.Points()), [isTime](double word) {
        return isTime ? word >= kTopSample || word <= kBottomSample : word >= kTopMagnitude;
      }));
}

}  // namespace kestrel
