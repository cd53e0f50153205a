// The grid of the bands in its editor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QToolTip>

#include "support/dark_palette.h"
#include "support/given.h"
#include "ui/bands/alarm_editor_bench.h"
#include "ui/bands/band_grid.h"

namespace kestrel {

inline constexpr int kAlarm1X = 3;
inline constexpr int kAlarm2Z = 8;

class BandGridTest : public AlarmEditorBench {
 protected:
  void SetUp() override { Open(); }
  static bool IsAt(BandCell cell, int band, int column) { return cell == BandCell{band, column}; }
};

}  // namespace kestrel
