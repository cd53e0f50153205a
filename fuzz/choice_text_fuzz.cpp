// Arbitrary bytes read as what the analyser's user has chosen.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "require.h"
#include "study/choice_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel;
  const auto read = study::ChoiceFrom({reinterpret_cast<const char*>(data), size});
  const study::StudyChoice& choice = read.choice;
  Require(choice.averageOf >= 1 && choice.averageOf <= 10'000, "captures can be averaged");
  Require(choice.cursorMembers >= 1 && choice.cursorMembers <= 50, "members can be drawn");
  Require(choice.markers.size() <= 1'000 && choice.bands.size() <= 1'000, "lists have an end");
  Require(analysis::AreLimits(choice.zones), "limits rise");
  for (const auto& bearing : choice.machine.bearings) {
    Require(analysis::AreFactors(bearing.factors), "a bearing has factors");
  }
  const auto again = study::ChoiceFrom(study::TextOf(choice));
  Require(again.choice == choice, "what is kept is read");
  Require(again.messages.empty(), "without complaint");
  return 0;
}
