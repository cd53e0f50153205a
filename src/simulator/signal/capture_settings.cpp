// REC_CTRL, FFT_AVG and REC_PRD decoded; rates, durations and weights from them.
// SPDX-License-Identifier: MIT
#include "simulator/signal/capture_settings.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrel {
namespace {

constexpr double kSampleClockHz = 100189.9;
constexpr double kBlockOverheadS = 0.040;  // transform and bookkeeping of one block
constexpr double kTimeOverheadS = 0.005;
constexpr double kLeastPerBlockS = 0.045;
constexpr double kLeastPerOptionS = 0.010;
constexpr std::array kMagnitudeLsbG = {0.0000153, 0.0000763, 0.0003052, 0.0011921};

constexpr unsigned kTimerMode = 1;
constexpr unsigned kTimeMode = 2;

// REC_PRD: a count, and its unit in bits 9:8; the unit code that is left over counts as hours.
std::chrono::nanoseconds Period(std::uint16_t recPrd) {
  const unsigned count = recPrd & 0xFFU;
  switch ((recPrd >> 8U) & 3U) {
    case 0:
      return std::chrono::seconds{count};
    case 1:
      return std::chrono::minutes{count};
    default:
      return std::chrono::hours{count};
  }
}

}  // namespace

CaptureSettings CaptureSettings::Latch(std::uint16_t recCtrl, std::uint16_t fftAvg,
                                       std::uint16_t recPrd) {
  return {.timeRecord = (recCtrl & 3U) == kTimeMode,
          .repeats = (recCtrl & 3U) == kTimerMode,
          .storage = static_cast<RecordStorage>((recCtrl >> 2U) & 3U),
          .sampleRateOption = (recCtrl >> 8U) & 3U,
          .window = static_cast<WindowShape>((recCtrl >> 12U) & 3U),
          .range = (recCtrl >> 4U) & 3U,
          .averages = fftAvg & 0xFFU,
          .period = Period(recPrd)};
}

double CaptureSettings::SampleRateHz() const {
  return kSampleClockHz / static_cast<double>(1U << (3U * sampleRateOption));
}

unsigned CaptureSettings::Blocks() const {
  return timeRecord ? 1U : std::max(averages, 1U);
}

std::chrono::nanoseconds CaptureSettings::Duration() const {
  const double blockSeconds = static_cast<double>(kFftLength) / SampleRateHz();
  double seconds = blockSeconds + kTimeOverheadS;
  if (!timeRecord) {
    const double least = averages * kLeastPerBlockS + sampleRateOption * kLeastPerOptionS;
    seconds = std::max(Blocks() * (blockSeconds + kBlockOverheadS), least);
  }
  return std::chrono::nanoseconds{std::llround(seconds * 1e9)};
}

std::chrono::nanoseconds CaptureSettings::Interval() const {
  return std::max(period, Duration());
}

std::uint64_t CaptureSettings::CompletedIn(std::chrono::nanoseconds elapsed) const {
  if (elapsed < Duration()) return 0;
  return static_cast<std::uint64_t>((elapsed - Duration()) / Interval()) + 1;
}

double CaptureSettings::MagnitudeLsbG() const {
  return kMagnitudeLsbG[range];
}

std::uint16_t CaptureSettings::InfoWord() const {
  return static_cast<std::uint16_t>((sampleRateOption << 14U) |
                                    (static_cast<unsigned>(window) << 12U) | (range << 10U) |
                                    averages);
}

}  // namespace kestrel
