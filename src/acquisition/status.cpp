// How the status flags are read and coloured.
// SPDX-License-Identifier: MIT
#include "acquisition/status.h"

#include <cstring>

#include "acquisition/readings.h"
#include "app/program_state.h"
#include "record/capture_data.h"
#include "record/status_flags.h"
#include "regmap/command_words.h"
#include "regmap/register_table.h"

namespace kestrel {

void StatusDisplay::ReadStatus(const std::string& caller) {
  alarms_.DisplayPeakAlarms();
  ShowNames();
  const auto status = ReadStatusFlags(registers_);
  if (!status) return;
  last_ = *status;
  if (caller == "cmdStart") last_.word &= ~kSpiFailureFlag;
  NameStatus(last_);
  ShowFlags();
  loop_.YieldToPaint();
}

void StatusDisplay::ClearStatus(const std::string& caller) {
  registers_.WriteReg(row::COMMAND, CommandWord(CommandBit::ClearStatus));
  ReadStatus(caller);
}

void StatusDisplay::ShowNames() {
  for (std::size_t bit = 0; bit < kStatusFlagTable.size(); ++bit) {
    view_.SetStatusName(static_cast<int>(bit), kStatusFlagTable[bit].name);
  }
}

void StatusDisplay::ShowFlags() {
  const auto texts = StatusTexts(last_);
  for (std::size_t bit = 0; bit < kStatusFlagTable.size(); ++bit) {
    const double setColour =
        std::strcmp(kStatusFlagTable[bit].whenSet, "FAIL") == 0 ? clrRed : clrYellow;
    const bool isSet = last_.IsSet(static_cast<int>(bit));
    view_.SetStatusFlag(static_cast<int>(bit), texts[bit], isSet ? setColour : clrGreen);
  }
}

}  // namespace kestrel
