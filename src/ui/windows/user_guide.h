// Opening the user guide in whatever program the user has for it.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>

#include "seams/files.h"
#include "seams/messages.h"

namespace kestrel {

// Opens a file in whatever program the user has for it; false where there is none.
using FileOpener = std::function<bool(const std::filesystem::path& file)>;
[[nodiscard]] bool OpenWithDesktop(const std::filesystem::path& file);

// The user guide, a page for a web browser beside the program or where programs share their files.
// Says so where it cannot be found or shown.
void OpenUserGuide(Files& files, Messages& messages, const FileOpener& open = OpenWithDesktop);

}  // namespace kestrel
