// The words of the sensor's buffers, read one by one.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "record/record.h"
#include "transport/register_access.h"

namespace kestrel {

// What happens while a record is read. All but `scale` may be left out.
struct ReadoutSteps {
  // REC_INFO is in the record's settings: gives it its scale, and REC_CTRL as it was set beside it.
  std::function<void(Record& record)> scale;
  std::function<void(std::int32_t recordCount)> counted;  // the rest follows
  std::function<void(float volts)> supply;
  std::function<void(float celsius)> temperature;
  std::function<void(int done, int total)> points;  // every now and then
};

// One word of a record: which axis, and at which value of the buffer pointer.
struct BufferPlace {
  Axis axis = Axis::X;
  int point = 0;
  bool operator==(const BufferPlace&) const = default;
};

// The row of an axis' buffer.
[[nodiscard]] std::int16_t BufferRow(Axis axis);

// One word: the pointer is written, then the buffer read. Nothing when the sensor was lost.
[[nodiscard]] std::optional<std::int32_t> ReadBufferWord(RegisterAccess& registers,
                                                         const BufferPlace& place);

// A word as the point of a record that has its scale.
void PutPoint(Record& record, const BufferPlace& place, std::int32_t word);

// All points of a record, axis by axis; false when the sensor was lost.
[[nodiscard]] bool ReadPointsSingly(RegisterAccess& registers, Record& record,
                                    const ReadoutSteps& steps);

}  // namespace kestrel
