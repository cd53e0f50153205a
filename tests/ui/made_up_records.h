// Records as a machine could give them, for tests of the analyser.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "record/frequency.h"
#include "record/record.h"
#include "ui/study/study_model.h"

namespace kestrel {

// 21 November 2025, in seconds since 1970.
inline constexpr int kMadeUpStart = 1'763'750'000;

inline std::chrono::system_clock::time_point MadeUpTime(int second) {
  return std::chrono::system_clock::from_time_t(kMadeUpStart + second);
}

// A spectrum at 0 to 20 g, Hanning, with lines of Z (bin and magnitude word) over a floor of 3.
inline Record MadeUpSpectrum(int second, const std::vector<std::pair<int, int>>& lines,
                             int option = 0) {
  Record record;
  record.time = MadeUpTime(second);
  record.settings.option = static_cast<std::int16_t>(option);
  record.settings.window = 1;
  record.settings.averages = 8;
  record.settings.range = record.scaledRange = 2;
  record.lsbWeight = LsbWeightOf(2, RecordKind::Spectrum);
  for (const Axis axis : kAxes) {
    for (int bin = 0; bin < 256; ++bin) record.Of(axis).raw(bin) = bin < 3 ? 900 : 3;
  }
  for (const auto& [bin, word] : lines) record.Of(Axis::Z).raw(bin) = word;
  for (const Axis axis : kAxes) {
    for (int bin = 0; bin < 256; ++bin) {
      record.Of(axis).data(bin) = record.Of(axis).raw(bin) * record.lsbWeight;
    }
  }
  return record;
}

inline void TakeRecord(StudyModel& model, Record record) {
  model.Take(std::make_shared<const Record>(std::move(record)));
}

}  // namespace kestrel
