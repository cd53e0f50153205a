// Spectra as records, for tests of studies.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "record/record.h"
#include "study/study.h"

namespace kestrel::study {

using TimePoint = std::chrono::system_clock::time_point;

inline TimePoint AtSecond(int second) {
  return std::chrono::system_clock::from_time_t(1'763'750'000 + second);
}

// At 0 to 20 g, Hanning, with lines of all axes (bin and word).
inline RecordPointer SpectrumRecord(int second, const std::vector<std::pair<int, int>>& lines,
                                    int option = 0, int window = 1) {
  auto record = std::make_shared<Record>();
  record->time = AtSecond(second);
  record->settings.option = static_cast<std::int16_t>(option);
  record->settings.window = static_cast<std::int16_t>(window);
  record->settings.averages = 8;
  record->settings.range = record->scaledRange = 2;
  record->lsbWeight = LsbWeightOf(2, RecordKind::Spectrum);
  for (const Axis axis : kAxes) {
    for (const auto& [bin, word] : lines) {
      record->Of(axis).raw(bin) = word;
      record->Of(axis).data(bin) = word * record->lsbWeight;
    }
  }
  return record;
}

inline Study StudyWithSeconds() {
  return Study([](TimePoint time) {
    return std::to_string(
               std::chrono::duration_cast<std::chrono::seconds>(time - AtSecond(0)).count()) +
           " s";
  });
}

}  // namespace kestrel::study
