// Looking for the adapter while nothing is at work.
// SPDX-License-Identifier: MIT
#include "ui/main/adapter_watcher.h"

#include <chrono>

#include "app/program_state.h"

namespace kestrel {
namespace {

constexpr std::chrono::milliseconds kInterval{500};

}  // namespace

AdapterWatcher::AdapterWatcher(Core& core, HandlerEdge& edge, QObject* parent)
    : QObject(parent), core_(core), edge_(edge) {
  connect(&timer_, &QTimer::timeout, this, &AdapterWatcher::Look);
  timer_.start(kInterval);
}

void AdapterWatcher::Look() {
  if (!edge_.Resting() || InterfaceType != kUsbAdapter) return;
  if (core_.usb.FindLost()) emit Lost();
}

}  // namespace kestrel
