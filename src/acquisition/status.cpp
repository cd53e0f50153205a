// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "acquisition/status.h"

#include <array>
#include <cstring>

#include "acquisition/commands.h"
#include "app/program_state.h"
#include "device/capture_data.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int32_t kSpiFailureFlag = 8;

struct Flag {
  const char* name;
  const char* whenSet;
};

constexpr std::array<Flag, kStatusFlags> kFlags{{{"Supply < 3.150 V", "FAIL"},
                                                 {"Supply > 3.625 V", "FAIL"},
                                                 {"Flash Update Failure", "FAIL"},
                                                 {"SPI Comm Failure", "FAIL"},
                                                 {"Recording Esc. Flag", "FAIL"},
                                                 {"Self-test Diagnostic", "FAIL"},
                                                 {"Flash Memory Failure", "FAIL"},
                                                 {"Data Ready", "SET"},
                                                 {"X axis Alarm 1", "SET"},
                                                 {"Y axis Alarm 1", "SET"},
                                                 {"Z axis Alarm 1", "SET"},
                                                 {"X axis Alarm 2", "SET"},
                                                 {"Y axis Alarm 2", "SET"},
                                                 {"Z axis Alarm 2", "SET"},
                                                 {"System Alarm", "SET"}}};

}  // namespace

void StatusDisplay::ReadStatus(const std::string& caller) {
  alarms_.DisplayPeakAlarms();
  ShowNames();
  registers_.ReadReg(row::STATUS);
  if (!RegisterAccess::Usable()) return;
  ShowFlags(caller == "cmdStart" ? RegValue & ~kSpiFailureFlag : RegValue);
  loop_.YieldToPaint();
}

void StatusDisplay::ClearStatus(const std::string& caller) {
  registers_.WriteReg(row::COMMAND, kClearStatusCommand);
  ReadStatus(caller);
}

void StatusDisplay::ShowNames() {
  for (std::size_t bit = 0; bit < kFlags.size(); ++bit) {
    view_.SetStatusName(static_cast<int>(bit), kFlags[bit].name);
  }
}

void StatusDisplay::ShowFlags(std::int32_t word) {
  for (std::size_t bit = 0; bit < kFlags.size(); ++bit) {
    const bool isSet = (word >> bit & 1) != 0;
    const char* text = isSet ? kFlags[bit].whenSet : "OK";
    const double setColour = std::strcmp(kFlags[bit].whenSet, "FAIL") == 0 ? clrRed : clrYellow;
    view_.SetStatusFlag(static_cast<int>(bit), text, isSet ? setColour : clrGreen);
    StatusFlagText[bit] = text;
  }
}

}  // namespace kestrel
