// Desktop notifications, as a seam.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace kestrel {

class Notifier {
 public:
  virtual ~Notifier() = default;
  // Returns at once. Where nobody shows notifications nothing happens.
  virtual void Tell(const QString& title, const QString& text) = 0;
};

}  // namespace kestrel
