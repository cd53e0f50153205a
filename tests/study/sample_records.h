// Records as the simulated sensor takes them, of tones between bins, and studies of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "record/frequency.h"
#include "record/record.h"
#include "simulator/signal/capture_engine.h"
#include "study/study.h"

namespace kestrel::study {

// What a sample record is taken of and how. Tones are on all axes, on Y half and on Z a quarter as
// large.
struct Sample {
  std::vector<Tone> tones = {};
  RecordKind kind = RecordKind::Spectrum;
  int option = 0;
  WindowShape window = WindowShape::Hanning;
  int range = 2;  // 0 to 20 g
  unsigned averages = 1;
  double noiseDensityG = 0;
  double offsetG = 0;
  int second = 0;  // of its time; another record, another second
};

inline std::chrono::system_clock::time_point SampleTime(int second) {
  return std::chrono::system_clock::time_point(std::chrono::seconds(1'700'000'000 + second));
}

inline Tone ToneAtBin(double bin, double peakG, int option = 0) {
  return {.frequencyHz = bin * BinWidth(option), .amplitudeG = peakG, .phaseRad = 0.7};
}

inline Record TakenOf(const Sample& sample) {
  Scenario scenario;
  for (std::size_t axis = 0; axis < kAxisCount; ++axis) {
    scenario.axes[axis] = {sample.tones, sample.offsetG, sample.noiseDensityG};
    const double part = axis == 0 ? 1 : axis == 1 ? 0.5 : 0.25;
    for (Tone& tone : scenario.axes[axis].tones) tone.amplitudeG *= part;
  }
  const bool isTime = sample.kind == RecordKind::Time;
  const CaptureSettings settings{.timeRecord = isTime,
                                 .sampleRateOption = static_cast<unsigned>(sample.option),
                                 .window = sample.window,
                                 .range = static_cast<unsigned>(sample.range),
                                 .averages = sample.averages};
  CaptureEngine engine(static_cast<std::uint64_t>(sample.second) + 7);
  const CapturedRecord taken =
      engine.Take(scenario, settings, {.seconds = 0.1 * sample.second}, {0, 0, 0});
  Record record;
  record.kind = sample.kind;
  record.settings = SettingsFromWords(settings.InfoWord(), 0);
  record.time = SampleTime(sample.second);
  record.conditions.recordCount = sample.second;
  for (const Axis axis : kAxes) {
    const auto& words = taken.words[Index(axis)];
    for (std::size_t i = 0; i < words.size(); ++i) {
      const double word = isTime ? static_cast<std::int16_t>(words[i]) : words[i];
      record.Of(axis).raw(static_cast<int>(i)) = word;
    }
  }
  return Rescaled(std::move(record), static_cast<std::int16_t>(sample.range));
}

inline RecordPointer RecordOf(const Sample& sample) {
  return std::make_shared<const Record>(TakenOf(sample));
}

// A record changed by `change`, a function of Record&.
template <typename Change>
RecordPointer Changed(const Sample& sample, Change change) {
  Record record = TakenOf(sample);
  change(record);
  return std::make_shared<const Record>(std::move(record));
}

// Seconds since the first sample record, as the user's clock.
inline std::string SampleClock(std::chrono::system_clock::time_point time) {
  const auto since = std::chrono::duration_cast<std::chrono::seconds>(time - SampleTime(0));
  return "at " + std::to_string(since.count()) + " s";
}

inline Study StudyOf(const StudyChoice& choice, const std::vector<Sample>& samples) {
  Study study(SampleClock, choice);
  for (const Sample& sample : samples) study.Take(RecordOf(sample));
  return study;
}

// The study after `change`, a function of StudyChoice&.
template <typename Change>
void Choose(Study& study, Change change) {
  StudyChoice choice = study.Choice();
  change(choice);
  study.Choose(std::move(choice));
}

inline void PlaceCursor(Study& study, CursorKind kind, const CursorPlaces& places) {
  Choose(study, [&](StudyChoice& choice) {
    choice.cursor = kind;
    choice.Places() = places;
  });
}

}  // namespace kestrel::study
