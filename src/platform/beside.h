// Another program of ours, run in the place of this one.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace kestrel {

// Runs the program that lies beside this one, or where packages put programs that only others start
// ("../libexec/kestrel"), with this one's arguments and streams. Returns its exit code; nothing
// where there is no such program. Where the system allows it, this program becomes the other and
// does not return. `argv` ends with a null.
[[nodiscard]] std::optional<int> RunBeside(const std::string& name, char** argv);

}  // namespace kestrel
