// Program-wide state: interface, product, colours.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

inline constexpr const char* kApplicationTitle = "Kestrel evaluation program";

// State of the whole program for the whole run, for reading; start values in brackets. The
// functions below are all that changes it.

// How the sensor is reached, a code (kNoInterface). CommPort.cfg and the interface menus choose it;
// it falls back to kNoInterface when no adapter can be used.
extern const std::int16_t& InterfaceType;
inline constexpr std::int16_t kNoInterface = 0;
inline constexpr std::int16_t kParallelPort = 1;
inline constexpr std::int16_t kUsbAdapter = 2;

extern const std::int16_t& PortAddress;    // base I/O address of the parallel port (0)
extern const std::int16_t& ProductNumber;  // of the connected sensor, no unit (0)
inline constexpr std::int16_t kProduct31407 = 31407;

// Colours as 0xBBGGRR, red in the low byte (0); set by Main. Nothing shows the last three: they are
// kept because the palette is known as these six.
extern const double& clrRed;
extern const double& clrGreen;
extern const double& clrYellow;
extern const double& clrAmber;
extern const double& clrMagenta;
extern const double& clrCyan;

// Colour value of red, green and blue, 0..255 each; higher parts count as 255.
[[nodiscard]] double Rgb(int red, int green, int blue);

void SetColours();

// The interface that is prepared next. Where registers are accessed it is chosen through
// RegisterAccess::Use, which takes its link as well.
void ChooseInterface(std::int16_t type);
void ChoosePort(std::int16_t address);
void ChooseProduct(std::int16_t number);

// Back to the start values in brackets.
void ResetProgramState();

}  // namespace kestrel
