// What the analyser's user has chosen as a text that is kept, and back.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "study/study_choice.h"

namespace kestrel::study {

// A line "key = JSON value" for each setting, for each part of a list one; numbers with "."
// whatever the locale, and exact. Frozen, reference and the difference to it are left out: their
// data are not kept.
[[nodiscard]] std::string TextOf(const StudyChoice& choice);

// What could be read of a text; what could not, or lies outside what can be chosen, is as a
// StudyChoice begins, with a message for the line.
struct ReadChoice {
  StudyChoice choice = {};
  std::vector<std::string> messages = {};
};
[[nodiscard]] ReadChoice ChoiceFrom(std::string_view text);

}  // namespace kestrel::study
