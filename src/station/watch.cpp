// The text of a step's failure.
// SPDX-License-Identifier: MIT
#include "station/watch.h"

namespace kestrel {
namespace {

const char* Words(FailureKind kind) {
  if (kind == FailureKind::NoSensor) return "The sensor cannot be reached.";
  return kind == FailureKind::Interrupted ? "Interrupted." : "Refused.";
}

}  // namespace

Failure StepEnd::Failed(FailureKind kind, const std::string& text) {
  std::string lines;
  for (const std::string& note : messages_.Take()) lines += (lines.empty() ? "" : "\n") + note;
  if (!text.empty()) lines += (lines.empty() ? "" : "\n") + text;
  return {kind, lines.empty() ? Words(kind) : lines};
}

}  // namespace kestrel
