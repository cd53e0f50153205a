// An analyser with no program around it: it may ask, nothing happens.
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/analyser/frmAnalyser.h"

namespace kestrel {

inline AnalyserHost NoHost(Files& files) {
  return {files, [] {}, [] {}, [](int) {}, [](Cure) {}, [] {}, [] {}};
}

}  // namespace kestrel
