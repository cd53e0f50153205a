// What is reported of set-ups, as text and as JSON.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"
#include "setup/difference.h"
#include "setup/sensor_setup.h"
#include "setup/setup_store.h"

namespace kestrel {

void WriteDifferences(const Output& output, const std::string& name,
                      const std::vector<setup::Difference>& all);
void WriteRestored(const Output& output, const setup::RestoreReport& report);
void WriteSetups(const Output& output, const std::vector<setup::SetupStore::Entry>& entries);
void WriteSetup(const Output& output, const setup::Setup& setup);

}  // namespace kestrel
