// The start values of what the last capture delivered.
// SPDX-License-Identifier: MIT
#include "record/capture_data.h"

#include <cmath>

namespace kestrel {

CaptureBuffer Buff;
std::string CaptureType = "FFT";
RecordArray DataX;
RecordArray DataY;
RecordArray DataZ;
RecordArray RawX;
RecordArray RawY;
RecordArray RawZ;
double LsbWeight = 0;
std::int16_t RangeSetting = 0;
float CaptSupply = 0;
float CaptTemp = 0;
std::array<std::string, kStatusFlags> StatusFlagText;
double AvgExponent = 0;

void NoteAverages(std::int32_t averages) {
  AvgExponent = averages > 0 ? std::log2(static_cast<double>(averages)) : 0;
}

void ResetCaptureData() {
  Buff = {};
  CaptureType = "FFT";
  DataX = DataY = DataZ = {};
  RawX = RawY = RawZ = {};
  LsbWeight = 0;
  RangeSetting = 0;
  CaptSupply = 0;
  CaptTemp = 0;
  StatusFlagText = {};
  AvgExponent = 0;
}

}  // namespace kestrel
