// Which reader a file is for, and what a record still has to be told.
// SPDX-License-Identifier: MIT
#include "exchange/imported.h"

#include <algorithm>

#include "exchange/readers.h"
#include "exchange/texts.h"

namespace kestrel::exchange {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char* kCanBeImported =
    "Data-log files of this program, universal files with datasets 58 and WAV files can be "
    "imported.";

bool IsUtf16(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

// What the file begins with, blanks and empty lines left out.
std::string_view Beginning(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  const std::size_t first = bytes.find_first_not_of(" \t\r\n");
  return first == std::string_view::npos ? "" : bytes.substr(first);
}

// "-1" on a line of its own.
bool IsUff(std::string_view beginning) {
  if (!beginning.starts_with("-1")) return false;
  const std::size_t next = beginning.find_first_not_of(" \t", 2);
  return next == std::string_view::npos || beginning[next] == '\r' || beginning[next] == '\n';
}

ImportedFile Read(std::string_view bytes) {
  if (bytes.empty()) throw ReadStop({.what = "The file is empty."});
  if (bytes.starts_with("RIFF") || bytes.starts_with("RIFX") || bytes.starts_with("RF64")) {
    return WavRead(bytes);
  }
  if (IsUtf16(bytes)) {
    StopAtByte(0, "The file is text in UTF-16. Save it as UTF-8 or plain text, and import that.");
  }
  const std::string_view beginning = Beginning(bytes);
  if (IsUff(beginning)) return UffRead(bytes);
  if (beginning.starts_with("File Name") || beginning.starts_with("\"File Name")) {
    return DataLogRead(bytes);
  }
  if (beginning.starts_with("# kestrel records") ||
      (beginning.starts_with("{") && beginning.find("\"kestrel records\"") < 100)) {
    StopAtLine(1, std::string("This is an export for other programs. The same records exported as "
                              "uff58, uff58b or wav can be imported. ") +
                      kCanBeImported);
  }
  StopAtByte(0, "The file begins with " + Shown(bytes.substr(0, 20)) + ". " + kCanBeImported);
}

}  // namespace

Exchanged<ImportedFile> Imported(const std::string& file, std::string_view bytes) {
  try {
    ImportedFile imported = Read(bytes);
    imported.file = file;
    return imported;
  } catch (const ReadStop& stop) {
    Fault fault = stop.Why();
    fault.file = OneLine(CleanUtf8(file));
    return fault;
  }
}

std::vector<std::string> UnknownsOf(const ImportedRecord& record) {
  std::vector<std::string> unknowns;
  const auto needs = [&unknowns](bool known, const char* what) {
    if (!known) unknowns.emplace_back(what);
  };
  const bool hasAxes = std::ranges::all_of(
      record.traces, [](const ImportedTrace& trace) { return trace.axis.has_value(); });
  needs(hasAxes, "axis of each trace");
  needs(record.step.has_value() || record.settings.has_value(), "sample rate");
  needs(record.gPerUnit.has_value(), record.unit.empty() ? "unit" : "unit in g");
  needs(record.settings.has_value(), "range");
  if (record.kind == RecordKind::Spectrum) needs(record.settings.has_value(), "window");
  needs(record.time.has_value(), "time");
  return unknowns;
}

}  // namespace kestrel::exchange
