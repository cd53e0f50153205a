// The command-line program as a function.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "cli/session.h"

namespace kestrel {

// Runs the command-line program; `arguments` without the program's name.
ExitCode RunProgram(const std::vector<std::string>& arguments, const Surroundings& surroundings);

}  // namespace kestrel
