// Records with everything in them, by seeds.
// SPDX-License-Identifier: MIT
#pragma once

#include <random>

#include "record/record.h"

namespace kestrel {

class RandomRecords {
 public:
  explicit RandomRecords(unsigned seed) : random_(seed) {}

  int Number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  bool Coin() { return Number(0, 1) == 1; }

  Record Next() {
    Record record;
    record.kind = Coin() ? RecordKind::Time : RecordKind::Spectrum;
    record.settings = SettingsFromWords(Number(0, 0xffff), Number(0, 0xffff));
    record.scaledRange = static_cast<std::int16_t>(Number(0, 3));
    record.lsbWeight = LsbWeightOf(record.scaledRange, record.kind);
    record.conditions = {static_cast<float>(Number(3000, 3600)) / 1000.0F,
                         static_cast<float>(Number(-400, 1050)) / 10.0F, Number(0, 0xffff)};
    if (Coin()) record.status = {Number(0, 0x7fff), true};
    AddAlarms(record);
    AddPoints(record);
    record.origin = {.stopped = Coin(), .countBefore = {}, .stored = {}};
    if (Coin()) record.origin.countBefore = Number(0, 0xffff);
    if (Coin()) record.origin.stored = Number(0, 15);
    record.time = std::chrono::system_clock::time_point(
        std::chrono::microseconds(1'763'750'000'000'000LL + Number(0, 1'000'000'000)));
    record.sensor = {31407, Coin() ? "Ezusb-0" : "parallel port 378", Coin() ? "Board 7" : "",
                     Coin()};
    return record;
  }

 private:
  void AddAlarms(Record& record) {
    for (AxisAlarms& axis : record.alarms.axes) {
      axis = {Number(0, 0x3fff), Number(0, 0xffff), Number(0, 255)};
    }
    record.alarms.gPerPeakLsb = LsbWeightOf(record.scaledRange, RecordKind::Spectrum);
    record.alarms.statusKnown = Coin();
    record.alarms.peaksKnown = Coin();
  }
  void AddPoints(Record& record) {
    const bool isSigned = record.kind == RecordKind::Time;
    for (AxisRecord& axis : record.axes) {
      for (int i = 0; i < static_cast<int>(record.Points()); ++i) {
        axis.raw(i) = isSigned ? Number(-32768, 32767) : Number(0, 65535);
        axis.data(i) = axis.raw(i) * record.lsbWeight;
      }
    }
  }

  std::mt19937 random_;
};

}  // namespace kestrel
