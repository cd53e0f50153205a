// Notifications through the desktop's own service, or the tray where there is none.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "ui/watch/notifier.h"

namespace kestrel {

// Nothing is asked of the desktop before the first notification. A service that does not answer
// keeps nobody waiting.
class DesktopNotifier : public Notifier {
 public:
  DesktopNotifier();
  ~DesktopNotifier() override;
  DesktopNotifier(const DesktopNotifier&) = delete;
  DesktopNotifier& operator=(const DesktopNotifier&) = delete;

  void Tell(const QString& title, const QString& text) override;

 private:
  class Way;
  std::unique_ptr<Way> way_;
};

}  // namespace kestrel
