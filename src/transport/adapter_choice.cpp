// Makes a board that was found the one in use.
// SPDX-License-Identifier: MIT
#include "transport/adapter_choice.h"

#include "app/config_file.h"
#include "app/program_state.h"

namespace kestrel {
namespace {

bool IsPresent(int index) {
  return index >= 0 && index < kAdapterNames &&
         AdapterRecords[static_cast<std::size_t>(index)].present;
}

// The record of this name, else the first one with a board; -1 for none.
int Preferred(const std::string& name) {
  int first = -1;
  for (int n = kAdapterNames - 1; n >= 0; --n) {
    if (!IsPresent(n)) continue;
    if (AdapterRecords[static_cast<std::size_t>(n)].deviceName == name) return n;
    first = n;
  }
  return first;
}

}  // namespace

bool ChooseAdapter(UsbAdapter& usb, RegisterAccess& registers, Files& files, int index) {
  if (!IsPresent(index)) {
    UsbAdapter::SelectNone();
    return false;
  }
  usb.SelectAdapter(index);
  // A board that refuses the first is not sent the second.
  if (!usb.UsbSetupSpi(UsbSpiSetupValue) || !usb.UsbSetSpiBits(UsbSpiBits)) return false;
  registers.Use(kUsbAdapter);
  WriteConfigFile(files);
  return true;
}

bool ChooseAdapterAgain(UsbAdapter& usb, RegisterAccess& registers, Files& files) {
  const std::string earlier = SelectedAdapter.deviceName;
  usb.FindAdapters();
  return ChooseAdapter(usb, registers, files, Preferred(earlier));
}

}  // namespace kestrel
