// The file that a list of all registers is kept in.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "seams/files.h"
#include "seams/locale.h"

namespace kestrel {

inline constexpr const char* kRegisterLogName = "Registers_LOG.txt";

// Title of a register list on paper and in files: the application, and below it the moment, lines
// ended by CR LF.
[[nodiscard]] std::string RegisterListTitle(Locale& locale);

// Replaces the register log with this list, and says where it is. Throws RuntimeError with path and
// reason when it cannot; the earlier log is then untouched.
std::filesystem::path WriteRegisterLog(Files& files, Locale& locale, const std::string& list);

}  // namespace kestrel
