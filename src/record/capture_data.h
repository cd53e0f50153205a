// The last capture under its program-wide names.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "record/record_array.h"

namespace kestrel {

inline constexpr std::size_t kStatusFlags = 15;  // STATUS bits 0..14

struct CaptureBuffer {
  std::int16_t width = kFftWidth;     // index of the last valid point; capture cycle
  std::int16_t sampleRateOption = 0;  // as the record's information has it; ReadCaptureBuffer
};

// The last capture read from the sensor; start values in brackets.
extern CaptureBuffer Buff;       // (255, 0)
extern std::string CaptureType;  // "FFT" or "TimeDomain" ("FFT"); capture cycle
extern RecordArray DataX;        // g (0); ReadCaptureBuffer, as all below
extern RecordArray DataY;
extern RecordArray DataZ;
extern RecordArray RawX;  // words as decoded (0)
extern RecordArray RawY;
extern RecordArray RawZ;
extern double LsbWeight;           // g per LSB (0)
extern std::int16_t RangeSetting;  // range code (0)
extern float CaptSupply;           // V (0)
extern float CaptTemp;             // degrees Celsius (0)

// "OK", "SET" or "FAIL" for each STATUS bit (empty); ReadStatus.
extern std::array<std::string, kStatusFlags> StatusFlagText;

// 2 to this power is the number of FFT averages (0); record settings.
extern double AvgExponent;

// Keeps the number of FFT averages, 1 to 255, for the data-log files' headers.
void NoteAverages(std::int32_t averages);

// Back to the start values in brackets.
void ResetCaptureData();

}  // namespace kestrel
