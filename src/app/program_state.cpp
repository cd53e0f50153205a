// Start values of the program-wide state, and the six colours.
// SPDX-License-Identifier: MIT
#include "app/program_state.h"

#include <algorithm>

namespace kestrel {

std::int16_t InterfaceType = kNoInterface;
std::int16_t PortAddress = 0;
std::int16_t ProductNumber = 0;
bool PortReady = false;
bool StopSpiLoop = true;
bool UsbPresent = false;
bool UsbCsPerWord = true;
std::uint8_t UsbSpiDelay = 1;
std::uint8_t UsbSpiBits = 120;
std::uint8_t UsbSpiSetupValue = 25;
double clrRed = 0;
double clrGreen = 0;
double clrYellow = 0;
double clrAmber = 0;
double clrMagenta = 0;
double clrCyan = 0;

double Rgb(int red, int green, int blue) {
  const auto part = [](int value) { return static_cast<double>(std::clamp(value, 0, 255)); };
  return part(red) + 256.0 * part(green) + 65536.0 * part(blue);
}

void SetColours() {
  clrRed = Rgb(230, 0, 0);
  clrGreen = Rgb(0, 210, 0);
  clrYellow = Rgb(240, 240, 0);
  clrAmber = Rgb(255, 230, 0);
  clrMagenta = Rgb(250, 0, 250);
  clrCyan = Rgb(0, 255, 255);
}

void SetStartDefaults() {
  PortReady = false;
  StopSpiLoop = true;
  UsbCsPerWord = true;
  UsbSpiDelay = 1;
  UsbSpiBits = 120;
  UsbSpiSetupValue = 25;
  InterfaceType = kNoInterface;
}

void ResetProgramState() {
  SetStartDefaults();
  PortAddress = 0;
  ProductNumber = 0;
  UsbPresent = false;
  clrRed = clrGreen = clrYellow = clrAmber = clrMagenta = clrCyan = 0;
}

}  // namespace kestrel
