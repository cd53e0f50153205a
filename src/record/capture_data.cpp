// What the program-wide names of the record at hand refer to.
// SPDX-License-Identifier: MIT
#include "record/capture_data.h"

#include <cmath>

namespace kestrel {
namespace {

struct CaptureNames {
  CaptureBuffer buff;
  std::string type = "FFT";
  std::array<RecordArray, 3> data;
  std::array<RecordArray, 3> raw;
  double lsbWeight = 0;
  std::int16_t range = 0;
  float supply = 0;
  float temperature = 0;
  std::array<std::string, kStatusFlags> statusTexts;
  double averagesExponent = 0;
};

CaptureNames names;

}  // namespace

const CaptureBuffer& Buff = names.buff;
const std::string& CaptureType = names.type;
const RecordArray& DataX = names.data[0];
const RecordArray& DataY = names.data[1];
const RecordArray& DataZ = names.data[2];
const RecordArray& RawX = names.raw[0];
const RecordArray& RawY = names.raw[1];
const RecordArray& RawZ = names.raw[2];
const double& LsbWeight = names.lsbWeight;
const std::int16_t& RangeSetting = names.range;
const float& CaptSupply = names.supply;
const float& CaptTemp = names.temperature;
const std::array<std::string, kStatusFlags>& StatusFlagText = names.statusTexts;
const double& AvgExponent = names.averagesExponent;

void NameRecord(const Record& record) {
  NameKind(record.kind);
  names.buff.sampleRateOption = record.settings.option;
  for (const Axis axis : kAxes) {
    names.data[Index(axis)] = record.Of(axis).data;
    names.raw[Index(axis)] = record.Of(axis).raw;
  }
  names.lsbWeight = record.lsbWeight;
  names.range = record.scaledRange;
  names.supply = record.conditions.supplyV;
  names.temperature = record.conditions.temperatureC;
}

void NameKind(RecordKind kind) {
  const bool isTime = kind == RecordKind::Time;
  names.buff.width = isTime ? kTimeWidth : kFftWidth;
  names.type = isTime ? "TimeDomain" : "FFT";
}

void NameStatus(const StatusFlags& status) {
  names.statusTexts = StatusTexts(status);
}

void NoteAverages(std::int32_t averages) {
  names.averagesExponent = averages > 0 ? std::log2(static_cast<double>(averages)) : 0;
}

void ResetCaptureData() {
  names = {};
}

}  // namespace kestrel
