// A spectrum as a value: magnitudes in g peak, and what is needed to understand them.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <vector>

#include "analysis/refusal.h"
#include "analysis/windows.h"
#include "record/axis.h"
#include "record/record.h"

namespace kestrel::analysis {

inline constexpr std::size_t kTransformLength = 512;
inline constexpr std::size_t kSpectrumBins = 256;
inline constexpr int kOptions = 4;  // sample-rate options 0..3

// What the sensor's magnitudes are taken for; its words do not say.
enum class MagnitudeMeaning { PeakOfSine, Rms };

// Where the magnitudes come from.
enum class SpectrumSource { Sensor, TimeRecord, Average, MaximumHold, MinimumHold };

// Magnitudes of one axis, bin 0 first. `peakG` is the peak value of a sine with the window's gain
// taken out; bin 0 is the mean. All values are finite and none is negative.
struct Spectrum {
  std::vector<double> peakG{};
  double binWidthHz = 0;
  Window window{};
  int option = 0;    // sample-rate option, 0..3
  int range = 0;     // range code, 0..3
  int averages = 1;  // transforms averaged by the sensor
  int captures = 1;  // captures averaged or held by the program
  double stepG = 0;  // one step of the sensor's magnitude word; of an own transform the magnitude
                     // that rounding of the samples leaves in a bin
  Axis axis = Axis::X;
  SpectrumSource source = SpectrumSource::Sensor;
  MagnitudeMeaning meaning = MagnitudeMeaning::PeakOfSine;
  std::chrono::system_clock::time_point time{};  // UTC, of the record; epoch: none

  [[nodiscard]] std::size_t Bins() const { return peakG.size(); }
  [[nodiscard]] double FrequencyOf(double bin) const { return bin * binWidthHz; }  // Hz
  [[nodiscard]] double BinOf(double hz) const { return binWidthHz > 0 ? hz / binWidthHz : 0; }
  // Upper edge of the last bin in Hz.
  [[nodiscard]] double TopHz() const;
  // Bins below hold offset; at most Bins().
  [[nodiscard]] std::size_t FirstVibration() const;
  bool operator==(const Spectrum&) const = default;
};

struct SpectrumChoice {
  MagnitudeMeaning meaning = MagnitudeMeaning::PeakOfSine;
  WindowKind timeWindow = WindowKind::Hanning;  // for the transform of a time record
  bool ownRange = false;  // scale by the range that the record's information word tells
};

// The spectrum of one axis of a record; of a time record its own transform. Refused where the
// option or range is none of the sensor's, or a value is not finite.
[[nodiscard]] Told<Spectrum> SpectrumOf(const Record& record, Axis axis,
                                        const SpectrumChoice& choice = {});

// Magnitudes in the unit of the 512 samples, bins 0 to 256, peak of a sine with the window's gain
// taken out; bins 0 and 256 have no mirror image. Empty where there are not 512 samples or no known
// window.
[[nodiscard]] std::vector<double> Transform(std::span<const double> samples, const Window& window);

// The points of an axis in g, scaled as `choice` says.
[[nodiscard]] std::vector<double> ValuesInG(const Record& record, Axis axis, bool ownRange);

// g of one step of the record's words; 0 where the range is none.
[[nodiscard]] double StepOf(const Record& record, bool ownRange);

// Whether the record was scaled for another range than the one it was taken at.
[[nodiscard]] bool ScaledForOtherRange(const Record& record);

}  // namespace kestrel::analysis
