// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "acquisition/status.h"

#include <cstring>

#include "acquisition/commands.h"
#include "app/program_state.h"
#include "record/capture_data.h"
#include "record/status_flags.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int32_t kSpiFailureFlag = 8;

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
  for (std::size_t bit = 0; bit < kStatusFlagTable.size(); ++bit) {
    view_.SetStatusName(static_cast<int>(bit), kStatusFlagTable[bit].name);
  }
}

void StatusDisplay::ShowFlags(std::int32_t word) {
  for (std::size_t bit = 0; bit < kStatusFlagTable.size(); ++bit) {
    const bool isSet = (word >> bit & 1) != 0;
    const char* text = isSet ? kStatusFlagTable[bit].whenSet : kStatusFlagClear;
    const double setColour =
        std::strcmp(kStatusFlagTable[bit].whenSet, "FAIL") == 0 ? clrRed : clrYellow;
    view_.SetStatusFlag(static_cast<int>(bit), text, isSet ? setColour : clrGreen);
    StatusFlagText[bit] = text;
  }
}

}  // namespace kestrel
