// Making a board the selected one and the interface.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/files.h"
#include "transport/register_access.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// Makes the board of record `index` the selected one, sends it the SPI set-up value and then the
// SPI bits value, makes it the interface and remembers that in CommPort.cfg. Any other index, or a
// record without a board, leaves no board selected and ends the transfer loop. Returns whether the
// board took the settings; one that did not leaves the interface as it was.
bool ChooseAdapter(UsbAdapter& usb, RegisterAccess& registers, Files& files, int index);

// Searches again and chooses the board that was selected last or, where it is gone, the first one.
// Shows nothing when there is none; ExplainSearch tells why.
bool ChooseAdapterAgain(UsbAdapter& usb, RegisterAccess& registers, Files& files);

}  // namespace kestrel
