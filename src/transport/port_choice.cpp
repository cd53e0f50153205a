// The address window's OK: the typed address becomes the port in use.
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
  ChoosePort(NarrowToInteger(address.value));
  registers_.Use(kParallelPort);
  // A port that was made ready at another address, or was lost since, is not the one in use.
  const bool ready = PortReady && port_.IsHeld();
  if ((SystemName == "WinNT" || SystemName == "WinXP") && !ready) {
    PreparePort(service_, io_, port_, messages_);
  }
  WriteConfigFile(files_);
  return true;
}

}  // namespace kestrel
