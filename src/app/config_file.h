// The interface selection kept between runs in CommPort.cfg.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/files.h"
#include "seams/messages.h"

namespace kestrel {

// The interface selection is kept between runs in this file of the working folder, three lines
// "Interface = 2", "Port Address = 888", "ProductNumber = 31407".
inline constexpr const char* kConfigFileName = "CommPort.cfg";

// Reads the file into InterfaceType, PortAddress and ProductNumber. Lines without "=" and unknown
// keys are skipped; a value that is no 16-bit number leaves its setting unchanged and is named in
// one message for the whole file. Returns false, having changed nothing, when there is no readable
// file.
bool ReadConfigFile(Files& files, Messages& messages);

// Writes the three settings, replacing the file. A file that cannot be written is not reported.
void WriteConfigFile(Files& files);

}  // namespace kestrel
