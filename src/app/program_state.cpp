// What the names of the program-wide state refer to, and the six colours.
// SPDX-License-Identifier: MIT
#include "app/program_state.h"

#include <algorithm>

namespace kestrel {

namespace {

struct ProgramState {
  std::int16_t interfaceType = kNoInterface;
  std::int16_t portAddress = 0;
  std::int16_t productNumber = 0;
  double red = 0;
  double green = 0;
  double yellow = 0;
  double amber = 0;
  double magenta = 0;
  double cyan = 0;
};

ProgramState state;

}  // namespace

const std::int16_t& InterfaceType = state.interfaceType;
const std::int16_t& PortAddress = state.portAddress;
const std::int16_t& ProductNumber = state.productNumber;
const double& clrRed = state.red;
const double& clrGreen = state.green;
const double& clrYellow = state.yellow;
const double& clrAmber = state.amber;
const double& clrMagenta = state.magenta;
const double& clrCyan = state.cyan;

double Rgb(int red, int green, int blue) {
  const auto part = [](int value) { return static_cast<double>(std::clamp(value, 0, 255)); };
  return part(red) + 256.0 * part(green) + 65536.0 * part(blue);
}

void SetColours() {
  state.red = Rgb(230, 0, 0);
  state.green = Rgb(0, 210, 0);
  state.yellow = Rgb(240, 240, 0);
  state.amber = Rgb(255, 230, 0);
  state.magenta = Rgb(250, 0, 250);
  state.cyan = Rgb(0, 255, 255);
}

void ChooseInterface(std::int16_t type) {
  state.interfaceType = type;
}

void ChoosePort(std::int16_t address) {
  state.portAddress = address;
}

void ChooseProduct(std::int16_t number) {
  state.productNumber = number;
}

void ResetProgramState() {
  state = {};
}

}  // namespace kestrel
