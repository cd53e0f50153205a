// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "transport/port_choice.h"

#include "app/config_file.h"
#include "app/program_state.h"
#include "app/system_name.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "transport/port_driver.h"
#include "transport/typed_word.h"

namespace kestrel {

std::string PortChoice::AddressText() {
  return Hex(PortAddress);
}

bool PortChoice::cmdOK_Click(const std::string& text) {
  constexpr const char* kExample = "\nThe first port of most computers is 378.";
  if (IsBlank(text)) {
    messages_.Show(std::string("Port address: enter it in hexadecimal digits.") + kExample);
    return false;
  }
  const TypedWord address = ReadTypedWord(text);
  if (!address.fault.empty()) {
    messages_.Show("Port address: " + address.fault + kExample);
    return false;
  }
  PortAddress = NarrowToInteger(address.value);
  InterfaceType = kParallelPort;
  if ((SystemName == "WinNT" || SystemName == "WinXP") && !PortReady) Prepare();
  WriteConfigFile(files_);
  return true;
}

// Without giveio the system keeps the program off the ports, installed driver or not.
void PortChoice::Prepare() {
  SetupGiveIO(service_, messages_);
  io_.giveio();
  PortReady = true;
  port_.LptPortReset();
}

}  // namespace kestrel
