// Looking for the adapter when the system tells of a change.
// SPDX-License-Identifier: MIT
#include "ui/main/adapter_watcher.h"

#include <chrono>

#include "app/program_state.h"

namespace kestrel {
namespace {

constexpr std::chrono::milliseconds kInterval{500};
constexpr std::chrono::milliseconds kListFollows{100};  // after the system's message

}  // namespace

AdapterWatcher::AdapterWatcher(Core& core, HandlerEdge& edge, QObject* parent)
    : QObject(parent), core_(core), edge_(edge) {
  later_.setSingleShot(true);
  connect(&poll_, &QTimer::timeout, this, &AdapterWatcher::Look);
  connect(&later_, &QTimer::timeout, this, &AdapterWatcher::Look);
  Begin();
}

AdapterWatcher::~AdapterWatcher() {
  if (hasBegun_) static_cast<void>(core_.seams.usb.Watch({}));
}

// Told in whichever thread; looked at in this one, from its event loop.
void AdapterWatcher::Begin() {
  if (hasBegun_ || InterfaceType != kUsbAdapter) return;
  hasBegun_ = true;
  const bool isTold = core_.seams.usb.Watch(
      [this] { QMetaObject::invokeMethod(this, &AdapterWatcher::Told, Qt::QueuedConnection); });
  if (!isTold) poll_.start(kInterval);
}

void AdapterWatcher::Told() {
  later_.start(kListFollows);
  Look();
}

void AdapterWatcher::Look() {
  Begin();
  if (InterfaceType != kUsbAdapter) return;
  if (!edge_.Resting()) {
    if (!poll_.isActive()) later_.start(kInterval);
    return;
  }
  if (core_.usb.FindLost()) emit Lost();
}

}  // namespace kestrel
