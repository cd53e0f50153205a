// The watch over the adapter in use.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

#include "app/handler_edge.h"
#include "connection/core.h"

namespace kestrel {

// Looks twice a second, while nothing else is at work, whether the USB adapter in use is still
// there. Asks the system's list of devices; the board itself is not touched.
class AdapterWatcher : public QObject {
  Q_OBJECT

 public:
  AdapterWatcher(Core& core, HandlerEdge& edge, QObject* parent);

  // Looks now, unless something else is at work.
  void Look();

 signals:
  // The adapter has just been found missing; UsbPresent has fallen, no message was shown.
  void Lost();

 private:
  Core& core_;
  HandlerEdge& edge_;
  QTimer timer_;
};

}  // namespace kestrel
