// Sample frequencies worked out from the option.
// SPDX-License-Identifier: MIT
#include "record/frequency.h"

#include <cmath>

namespace kestrel {
namespace {

constexpr double kSampleClock = 100189.9;  // Hz, of the sensor
constexpr double kFftLength = 512;

}  // namespace

double SampleFrequency(int option) {
  return kSampleClock / std::pow(8.0, option);
}

double BinWidth(int option) {
  return SampleFrequency(option) / kFftLength;
}

}  // namespace kestrel
