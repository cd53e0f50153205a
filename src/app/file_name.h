// Whether a text can be the name of a file on every system.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel {

// Why a text cannot be the name of a file, with or without its extension, on every system the
// program runs on; empty when it can. Names in any script are welcome.
[[nodiscard]] std::string FileNameProblem(const std::string& name);

}  // namespace kestrel
