// Records as files that other programs understand.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "exchange/outcome.h"
#include "exchange/record_note.h"

namespace kestrel::exchange {

enum class ExportFormat { Uff58, Uff58b, Wav, Mat, Csv, Json };

inline constexpr std::array<ExportFormat, 6> kExportFormats{
    ExportFormat::Uff58, ExportFormat::Uff58b, ExportFormat::Wav,
    ExportFormat::Mat,   ExportFormat::Csv,    ExportFormat::Json};

// "uff58", "uff58b", "wav", "mat", "csv", "json".
[[nodiscard]] std::string NameOf(ExportFormat format);
// The format of one of these names; nothing for any other text.
[[nodiscard]] std::optional<ExportFormat> FormatNamed(std::string_view name);

// ".uff", ".wav", ...
[[nodiscard]] std::string ExtensionOf(ExportFormat format);

// Whether this program can write it: false for "wav" where it was built without libsndfile.
[[nodiscard]] bool IsBuiltIn(ExportFormat format);

// The whole content of a file of these records; the same records make the same bytes. A fault says
// why there is none, and what can be written instead.
[[nodiscard]] Exchanged<std::string> Exported(std::span<const NotedRecord> records,
                                              ExportFormat format);

}  // namespace kestrel::exchange
