// What is not as it seems about the record on the screen: what is, what it means, what helps.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "record/record.h"

namespace kestrel {

// The gravest first.
enum class NoticeKind { NotNew, Empty, WrongScale, Clipped, SensorLost };

enum class Cure {
  None,
  CaptureAgain,
  UseOwnRange,      // scale the record by the range at which it was taken: Rescaled()
  UseHigherRange,   // set the next higher range and capture again
  SelectInterface,  // search the adapter or select another
};

struct RecordNotice {
  NoticeKind kind = NoticeKind::NotNew;
  std::string what;   // "Taken at 0 to 70g, scaled for 0 to 5g"
  std::string means;  // what follows from it
  Cure cure = Cure::None;
  std::string cureText;  // of the button; empty where there is no cure
  bool operator==(const RecordNotice&) const = default;
};

// What is known now and was not when the record was read.
struct RecordPresent {
  bool sensorLost = false;
};

// The notices of a record, the gravest first; none for a record that was never taken.
[[nodiscard]] std::vector<RecordNotice> RecordNotices(const Record& record,
                                                      const RecordPresent& present);

// Whether nothing was ever written where the record was read from: every word is the same blank.
[[nodiscard]] bool IsEmpty(const Record& record);

// How many words of an axis are at an end of what the sensor can say.
[[nodiscard]] int ClippedPoints(const Record& record, Axis axis);

}  // namespace kestrel
