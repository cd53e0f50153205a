// The same board or port, made ready again.
// SPDX-License-Identifier: MIT
#include "acquisition/sensor_return.h"

#include <algorithm>

#include "app/program_state.h"

namespace kestrel {
namespace {

constexpr int kMostSkipped = 15;

}  // namespace

void SensorReturn::NoteRoad() {
  type_ = InterfaceType;
  board_ = SelectedAdapter.deviceName;
  vain_ = skip_ = 0;
}

bool SensorReturn::Look() {
  if (core_.registers.Reachable()) return true;
  if (type_ == kUsbAdapter) return LookForBoard();
  return type_ == kParallelPort && LookForPort();
}

bool SensorReturn::SameRoad() const {
  return InterfaceType == type_ && (type_ != kUsbAdapter || SelectedAdapter.deviceName == board_);
}

// A board that hangs keeps whoever asks it waiting.
bool SensorReturn::LookForBoard() {
  if (!core_.usb.IsAttached(board_)) {
    vain_ = skip_ = 0;
    return false;
  }
  if (skip_ > 0) {
    --skip_;
    return false;
  }
  skip_ = std::min(vain_++, kMostSkipped);
  core_.usb.FindAdapters();
  const auto found = std::ranges::find_if(AdapterRecords, [this](const AdapterRecord& record) {
    return record.present && record.deviceName == board_;
  });
  if (found == AdapterRecords.end()) return false;
  core_.usb.SelectAdapter(static_cast<int>(found - AdapterRecords.begin()));
  if (!core_.usb.UsbSetupSpi(UsbSpiSetupValue) || !core_.usb.UsbSetSpiBits(UsbSpiBits)) {
    return false;
  }
  core_.registers.Use(kUsbAdapter);
  return true;
}

bool SensorReturn::LookForPort() {
  core_.seams.port.giveio();
  if (!core_.port.IsHeld()) return false;
  core_.registers.Use(kParallelPort);
  core_.port.LptPortReset();
  return core_.registers.Reachable();
}

}  // namespace kestrel
