// The program-wide names of the record at hand, for reading, and what fills them.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "record/record.h"
#include "record/record_array.h"
#include "record/status_flags.h"

namespace kestrel {

struct CaptureBuffer {
  std::int16_t width = kFftWidth;     // index of the last valid point: 255 or 511
  std::int16_t sampleRateOption = 0;  // as the record's information has it, 0..3
  bool operator==(const CaptureBuffer&) const = default;
};

// The last capture; start values in brackets. Width and type follow the record mode as soon as a
// capture is complete, all others when its read-out is.
extern const CaptureBuffer& Buff;         // (255, 0)
extern const std::string& CaptureType;    // "FFT" or "TimeDomain" ("FFT")
extern const RecordArray& DataX;          // g (0)
extern const RecordArray& DataY;          // g (0)
extern const RecordArray& DataZ;          // g (0)
extern const RecordArray& RawX;           // words as decoded (0)
extern const RecordArray& RawY;           // words as decoded (0)
extern const RecordArray& RawZ;           // words as decoded (0)
extern const double& LsbWeight;           // g per LSB (0)
extern const std::int16_t& RangeSetting;  // range code (0)
extern const float& CaptSupply;           // V (0)
extern const float& CaptTemp;             // degrees Celsius (0)

// "OK", "SET" or "FAIL" for each STATUS bit (empty), as STATUS was last read.
extern const std::array<std::string, kStatusFlags>& StatusFlagText;

// 2 to this power is the number of FFT averages (0), as it was last read.
extern const double& AvgExponent;

// Fill the names: of the record at hand, of the kind that the next read-out will find, of STATUS.
void NameRecord(const Record& record);
void NameKind(RecordKind kind);
void NameStatus(const StatusFlags& status);

// Keeps the number of FFT averages, 1 to 255, for the data-log files' headers.
void NoteAverages(std::int32_t averages);

// Back to the start values in brackets.
void ResetCaptureData();

}  // namespace kestrel
