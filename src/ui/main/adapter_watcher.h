// The watch over the adapter in use.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

#include "app/handler_edge.h"
#include "connection/core.h"

namespace kestrel {

// Looks in the system's list of devices whether the USB adapter in use is still there, when the
// system tells that a board came or went; twice a second where it does not tell. While something
// else is at work it waits. The board itself is not touched.
class AdapterWatcher : public QObject {
  Q_OBJECT

 public:
  AdapterWatcher(Core& core, HandlerEdge& edge, QObject* parent);
  ~AdapterWatcher() override;
  AdapterWatcher(const AdapterWatcher&) = delete;
  AdapterWatcher& operator=(const AdapterWatcher&) = delete;

  // From the first time that an adapter is in use: asks the system to tell. Costs nothing again.
  void Begin();
  // Looks now; where something else is at work, afterwards.
  void Look();
  // Whether it looks without having been told that there is something to see.
  [[nodiscard]] bool Polls() const { return poll_.isActive(); }

 signals:
  // The adapter has just been found missing; UsbPresent has fallen, no message was shown.
  void Lost();

 private:
  void Told();

  Core& core_;
  HandlerEdge& edge_;
  QTimer poll_;   // where the system does not tell
  QTimer later_;  // runs after a change until its end has been seen
  bool hasBegun_ = false;
};

}  // namespace kestrel
