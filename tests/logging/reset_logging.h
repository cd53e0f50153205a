// The program-wide names of the data log's layer and of those below it.
// SPDX-License-Identifier: MIT
#pragma once

#include "app/program_state.h"
#include "logging/data_log.h"
#include "record/capture_data.h"

namespace kestrel {

// The names of the data log's layer and of those that it stands on back to their start values.
inline void ResetLogging() {
  ResetProgramState();
  ResetCaptureData();
  ResetDataLogState();
}

}  // namespace kestrel
