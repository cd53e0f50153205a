// Records of the archive put before the analyser's views.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <vector>

#include "ui/study/study_model.h"

namespace kestrel {

enum class Way { Open, Overlay, Average, Difference, Waterfall };

// How many records each way takes; beyond, a plot can neither be read nor drawn in time.
struct WayRange {
  int least = 1;
  int most = 1;
};
[[nodiscard]] WayRange RangeOf(Way way);

// Shows the records, the first of them in the place of the live one; the difference is that of the
// later to the earlier. Returns what has to be said of it; empty for nothing.
QString LookAt(StudyModel& model, Way way, const std::vector<study::RecordPointer>& records);

}  // namespace kestrel
