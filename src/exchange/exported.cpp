// Which records go into which format, and what is said where they do not.
// SPDX-License-Identifier: MIT
#include "exchange/exported.h"

#include <algorithm>
#include <cmath>

#include "exchange/writers.h"

namespace kestrel::exchange {
namespace {

struct FormatNames {
  const char* name;
  const char* extension;
};

// In the order of ExportFormat.
constexpr std::array<FormatNames, kExportFormats.size()> kNames{{{"uff58", ".uff"},
                                                                 {"uff58b", ".uff"},
                                                                 {"wav", ".wav"},
                                                                 {"mat", ".mat"},
                                                                 {"csv", ".csv"},
                                                                 {"json", ".json"}}};

const FormatNames& NamesOf(ExportFormat format) {
  return kNames.at(static_cast<std::size_t>(format));
}

Fault Refused(std::string what) {
  return {.what = std::move(what)};
}

// What no format can hold as a number.
bool HasNumbersOnly(const Record& record) {
  return std::ranges::all_of(kAxes, [&record](Axis axis) {
    const AxisRecord& points = record.Of(axis);
    const auto finite = [](double value) { return std::isfinite(value); };
    return std::ranges::all_of(points.data.First(record.Points()), finite) &&
           std::ranges::all_of(points.raw.First(record.Points()), finite);
  });
}

std::optional<Fault> WhyNotAsWav(std::span<const NotedRecord> records) {
  if (records.size() > 1) {
    return Refused("A WAV file holds one time record, and there are " +
                   std::to_string(records.size()) +
                   ". Write each into a file of its own, or all into uff58, uff58b, mat, csv or "
                   "json.");
  }
  if (records.front().record.kind != RecordKind::Time) {
    return Refused(
        "A WAV file holds time records, and this is a spectrum. It can be written as uff58, "
        "uff58b, "
        "mat, csv or json.");
  }
  return std::nullopt;
}

std::optional<Fault> WhyNot(std::span<const NotedRecord> records, ExportFormat format) {
  if (records.empty()) return Refused("There is no record to write.");
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Record& record = records[i].record;
    const std::string which = "Record " + std::to_string(i + 1);
    if (!HasNumbersOnly(record)) {
      return Refused(which + " holds a value that is not a finite number; it was not written.");
    }
    if (record.settings.option < 0 || record.settings.option > 3) {
      return Refused(which + " has the sample-rate option " +
                     std::to_string(record.settings.option) +
                     ", which the sensor does not know (0 to 3); it was not written.");
    }
  }
  return format == ExportFormat::Wav ? WhyNotAsWav(records) : std::nullopt;
}

}  // namespace

std::string NameOf(ExportFormat format) {
  return NamesOf(format).name;
}

std::optional<ExportFormat> FormatNamed(std::string_view name) {
  const auto found = std::ranges::find(kNames, name, &FormatNames::name);
  if (found == kNames.end()) return std::nullopt;
  return kExportFormats.at(static_cast<std::size_t>(found - kNames.begin()));
}

std::string ExtensionOf(ExportFormat format) {
  return NamesOf(format).extension;
}

bool IsBuiltIn(ExportFormat format) {
  return format != ExportFormat::Wav || CanWriteWav();
}

Exchanged<std::string> Exported(std::span<const NotedRecord> records, ExportFormat format) {
  if (auto fault = WhyNot(records, format)) return *std::move(fault);
  switch (format) {
    case ExportFormat::Uff58:
      return UffAscii(records);
    case ExportFormat::Uff58b:
      return UffBinary(records);
    case ExportFormat::Wav:
      return WavFile(records.front());
    case ExportFormat::Mat:
      return MatFile(records);
    case ExportFormat::Csv:
      return CsvFile(records);
    case ExportFormat::Json:
      break;
  }
  return JsonFile(records);
}

}  // namespace kestrel::exchange
