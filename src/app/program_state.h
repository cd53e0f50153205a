// Program-wide state: interface, product, adapter settings, colours.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

inline constexpr const char* kApplicationTitle = "Kestrel evaluation program";

// State of the whole program for the whole run. Start values in brackets.

// How the sensor is reached (kNoInterface). Set by CommPort.cfg and by the interface menus; falls
// back to kNoInterface when no adapter can be used.
extern std::int16_t InterfaceType;
inline constexpr std::int16_t kNoInterface = 0;
inline constexpr std::int16_t kParallelPort = 1;
inline constexpr std::int16_t kUsbAdapter = 2;

extern std::int16_t PortAddress;    // base I/O address of the parallel port (0); CommPort.cfg
extern std::int16_t ProductNumber;  // of the connected sensor (0); CommPort.cfg and product menu
inline constexpr std::int16_t kProduct31407 = 31407;

extern bool PortReady;     // the parallel-port driver has been enabled (false); InitInterface
extern bool StopSpiLoop;   // ends the adapter's endless transfer loop (true)
extern bool UsbPresent;    // the selected adapter answers (false); set by SelectUsbAdapter, cleared
                           // by any failed request
extern bool UsbCsPerWord;  // adapter command 13 rather than 14 (true)
extern std::uint8_t UsbSpiDelay;       // delay code of every transfer, 1..5 (1)
extern std::uint8_t UsbSpiBits;        // value last sent with adapter command 12 (120)
extern std::uint8_t UsbSpiSetupValue;  // value last sent with adapter command 11 (25)

// Colours as 0xBBGGRR, red in the low byte (0); set by Main. Nothing shows the last three: they are
// kept because the palette is known as these six.
extern double clrRed;
extern double clrGreen;
extern double clrYellow;
extern double clrAmber;
extern double clrMagenta;
extern double clrCyan;

// Colour value of red, green and blue, 0..255 each; higher parts count as 255.
[[nodiscard]] double Rgb(int red, int green, int blue);

void SetColours();

// What Main sets before it reads the configuration file.
void SetStartDefaults();

// Back to the start values in brackets.
void ResetProgramState();

}  // namespace kestrel
