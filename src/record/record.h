// A record as a value: what one capture delivered, and what is needed to understand it later.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "record/axis.h"
#include "record/record_array.h"

namespace kestrel {

enum class RecordKind { Spectrum, Time };

// One axis: words as decoded from the sensor, and the same in g. Points beyond the record's width
// are those of the longer record before it.
struct AxisRecord {
  RecordArray raw;
  RecordArray data;  // raw times the record's LSB weight
  bool operator==(const AxisRecord&) const = default;
};

// How a record was taken, as its own information word (REC_INFO) tells.
struct RecordSettings {
  std::int32_t recInfo = 0;   // the word itself
  std::int32_t recCtrl = 0;   // REC_CTRL as it was set beside it
  std::int16_t option = 0;    // sample-rate option, 0..3
  std::int16_t window = 0;    // code: 0 rectangular, 1 Hanning, 2 flat top; 3 is none
  std::int16_t range = 0;     // code: 0 to 3 for 1, 5, 20, 70 g
  std::int16_t averages = 0;  // FFT averages, 0..511 as read
  bool operator==(const RecordSettings&) const = default;
};

// The fields of a REC_INFO word: 15:14 option, 13:12 window, 11:10 range, 8:0 averages.
[[nodiscard]] RecordSettings SettingsFromWords(std::int32_t recInfo, std::int32_t recCtrl);

// What surrounded the sensor at the read-out.
struct Conditions {
  float supplyV = 0;
  float temperatureC = 0;
  std::int32_t recordCount = 0;  // REC_CNT
  bool operator==(const Conditions&) const = default;
};

// STATUS after the capture.
struct StatusFlags {
  std::int32_t word = 0;
  bool known = false;  // whether it has been read
  [[nodiscard]] bool IsSet(int bit) const { return (word >> bit & 1) != 0; }
  bool operator==(const StatusFlags&) const = default;
};

// ALM_x_STAT, ALM_x_PEAK and ALM_x_FREQ of one axis.
struct AxisAlarms {
  std::int32_t status = 0;
  std::int32_t peak = 0;  // code of the range at which the record was taken
  std::int32_t peakBin = 0;
  bool operator==(const AxisAlarms&) const = default;
};

struct AlarmState {
  std::array<AxisAlarms, 3> axes;
  double gPerPeakLsb = 0;    // of the range at which the record with these peaks was taken
  bool statusKnown = false;  // whether `status` of the axes has been read
  bool peaksKnown = false;   // whether `peak` and `peakBin` have
  [[nodiscard]] double PeakG(Axis axis) const { return Of(axis).peak * gPerPeakLsb; }
  [[nodiscard]] const AxisAlarms& Of(Axis axis) const { return axes[Index(axis)]; }
  // Whether a band of some axis warned or alarmed.
  [[nodiscard]] bool IsOn() const {
    return std::ranges::any_of(axes, [](const AxisAlarms& axis) { return axis.status != 0; });
  }
  bool operator==(const AlarmState&) const = default;
};

// Which sensor a record came from, as far as the program knows.
struct SensorIdentity {
  std::int32_t product = 0;  // 31407
  std::string interface;     // "Ezusb-0", "parallel port 378"
  std::string adapter;       // the board's own strings; empty for the parallel port
  bool simulated = false;
  bool operator==(const SensorIdentity&) const = default;
};

// How a record came into the sensor's buffers.
struct RecordOrigin {
  bool stopped = false;  // its capture was ended before data were ready
  // REC_CNT as it was known before the capture; none where nobody had read it.
  std::optional<std::int32_t> countBefore;
  std::optional<int> stored;  // its number in the sensor's flash, 0..15; none for a capture
  bool operator==(const RecordOrigin&) const = default;
};

struct Record {
  RecordKind kind = RecordKind::Spectrum;
  std::array<AxisRecord, 3> axes;
  double lsbWeight = 0;  // g per LSB by which `data` was made
  // Range code that was set at the read-out; another than 0..3 leaves the weight of the record
  // before.
  std::int16_t scaledRange = 0;
  RecordSettings settings;
  Conditions conditions;
  StatusFlags status;
  AlarmState alarms;
  RecordOrigin origin;
  std::chrono::system_clock::time_point time;  // UTC, when its read-out began; epoch: never
  SensorIdentity sensor;

  [[nodiscard]] const AxisRecord& Of(Axis axis) const { return axes[Index(axis)]; }
  [[nodiscard]] AxisRecord& Of(Axis axis) { return axes[Index(axis)]; }
  // Index of the last point: 255 or 511.
  [[nodiscard]] std::int16_t Width() const {
    return kind == RecordKind::Time ? kTimeWidth : kFftWidth;
  }
  [[nodiscard]] std::size_t Points() const { return static_cast<std::size_t>(Width()) + 1; }
  // The points in g.
  [[nodiscard]] std::span<const double> Values(Axis axis) const {
    return Of(axis).data.First(Points());
  }
  [[nodiscard]] bool Taken() const { return time.time_since_epoch().count() != 0; }
  // False when its capture was stopped before data were ready and the sensor has not counted a
  // record since: these are then the data of the record before.
  [[nodiscard]] bool IsNew() const {
    return !origin.stopped || (origin.countBefore && *origin.countBefore != conditions.recordCount);
  }
  bool operator==(const Record&) const = default;
};

// The same words scaled by another range code, 0..3.
[[nodiscard]] Record Rescaled(Record record, std::int16_t range);

// g per LSB of a record's words; of a time record it is twice that of a spectrum. `range` 0..3.
[[nodiscard]] double LsbWeightOf(std::int16_t range, RecordKind kind);

// Full scale of a range code 0..3 in g: 1, 5, 20, 70.
[[nodiscard]] double FullScaleOf(std::int16_t range);

}  // namespace kestrel
