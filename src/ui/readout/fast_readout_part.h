// The fast read-out in the main window: its menu entry, its notice, what is remembered of it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QObject>

#include "acquisition/fast_readout.h"
#include "app/handler_edge.h"
#include "ui/parts/notice_strip.h"

namespace kestrel {

// Takes the choice and the roads that were refused out of the user's file when it is made, and
// writes them whenever they change.
class FastReadoutPart : public QObject {
 public:
  FastReadoutPart(FastReadout& fast, QAction& item, NoticeStrip& strip, HandlerEdge& edge);

  // The entry as it now is; to be called after every handler.
  void Refresh();

 private:
  void mnuFastReadout_Click();
  void Tell(const FastReadout::Difference& difference);
  void TryAgain();
  void Read();
  void Keep() const;

  FastReadout& fast_;
  QAction& item_;
  NoticeStrip& strip_;
  HandlerEdge& edge_;
};

}  // namespace kestrel
