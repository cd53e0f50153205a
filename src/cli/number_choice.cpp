// What may be asked for together.
// SPDX-License-Identifier: MIT
#include "cli/number_choice.h"

#include <CLI/Error.hpp>
#include <cmath>
#include <string>

#include "analysis/spectrum.h"
#include "cli/word_choice.h"
#include "numeric/number_parse.h"

namespace kestrel {
namespace {

using analysis::Amplitude;
using analysis::Quantity;

const WordCodes<Quantity> kQuantities{{"g", Quantity::Acceleration},
                                      {"velocity", Quantity::Velocity},
                                      {"displacement", Quantity::Displacement},
                                      {"density", Quantity::Density}};
const WordCodes<Amplitude> kAmplitudes{
    {"peak", Amplitude::Peak}, {"rms", Amplitude::Rms}, {"pp", Amplitude::PeakToPeak}};

// Why a text cannot be the number of peaks; empty when it can.
std::string PeaksProblem(const std::string& text) {
  const auto count = WholeTextNumber(text);
  const bool fits = count && *count >= 1 && *count <= double{analysis::kSpectrumBins};
  if (fits && *count == std::floor(*count)) return {};
  return "\"" + text + "\" is not a number of peaks; it is a whole number from 1 to 256";
}

Amplitude UsualAmplitude(Quantity quantity) {
  switch (quantity) {
    case Quantity::Velocity:
    case Quantity::Density:
      return Amplitude::Rms;
    case Quantity::Displacement:
      return Amplitude::PeakToPeak;
    default:
      return Amplitude::Peak;
  }
}

}  // namespace

void NumberChoice::AddTo(CLI::App& app) {
  app.add_option_function<std::string>(
         "--peaks",
         [this](const std::string& text) { peaks_ = static_cast<int>(*WholeTextNumber(text)); },
         "Number of peaks to report of each axis, the largest first, 1 to 256")
      ->check(PeaksProblem)
      ->type_name("INT");
  app.add_flag("--levels", levels_, "Report the levels of each axis and of its alarm bands");
  quantity_.AddTo(app);
  app.parse_complete_callback([this] { Check(); });
}

void NumberChoice::Check() const {
  if (quantity_.Any() && !Any()) {
    throw CLI::ValidationError(quantity_.quantity ? "--quantity" : "--amplitude",
                               "is the one in which peaks and levels are reported. Give --peaks or "
                               "--levels as well");
  }
  quantity_.Check();
}

void QuantityOptions::AddTo(CLI::App& app) {
  AddChoice(app, "--quantity", quantity, kQuantities,
            "Quantity of peaks and levels, in g, mm/s, µm or g²/Hz");
  AddChoice(app, "--amplitude", amplitude, kAmplitudes,
            "Amplitude of peaks as peak, RMS or peak to peak");
}

void QuantityOptions::Check() const {
  if (quantity == Quantity::Density && amplitude && *amplitude != Amplitude::Rms) {
    throw CLI::ValidationError("--amplitude",
                               "a density is power, which is always RMS. Leave --amplitude out, "
                               "or choose another --quantity");
  }
}

analysis::QuantityChoice QuantityOptions::Choice() const {
  const Quantity chosen = quantity.value_or(Quantity::Acceleration);
  return {.quantity = chosen, .amplitude = amplitude.value_or(UsualAmplitude(chosen))};
}

}  // namespace kestrel
