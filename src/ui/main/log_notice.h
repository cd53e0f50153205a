// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QStatusBar>

#include "connection/core.h"
#include "logging/data_log.h"
#include "ui/main/capture_panel.h"

namespace kestrel {

// Tells in the status bar where captures are written.
class LogNotice {
 public:
  LogNotice(Core& core, const DataLog& log, CapturePanel& capture, QStatusBar& bar)
      : core_(core), log_(log), capture_(capture), bar_(bar) {}

  // Where the next one goes, and which earlier files it replaces.
  void ShowNext();
  // Where the last one went, once.
  void ShowLast();

 private:
  Core& core_;
  const DataLog& log_;
  CapturePanel& capture_;
  QStatusBar& bar_;
};

}  // namespace kestrel
