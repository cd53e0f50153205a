// Which option would do, and refusals as one line.
// SPDX-License-Identifier: MIT
#include "analysis/refusal.h"

namespace kestrel::analysis {

std::string AsLine(const Refusal& refusal) {
  std::string line = refusal.title;
  if (!refusal.reason.empty()) line += ": " + refusal.reason;
  if (!refusal.cure.empty()) line += " " + refusal.cure + ".";
  return line;
}

void MarkWhatWouldDo(Refusal& refusal, double fromHz, double toHz) {
  for (OptionOffer& offer : refusal.options) {
    offer.wouldDo = offer.fromHz <= fromHz && offer.toHz >= toHz;
    if (offer.wouldDo && !refusal.cureOption) refusal.cureOption = offer.option;
  }
  if (refusal.cureOption) {
    refusal.cure = "Capture at option " + std::to_string(*refusal.cureOption);
  }
}

}  // namespace kestrel::analysis
