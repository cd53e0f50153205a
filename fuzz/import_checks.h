// What must hold of any file that is imported, and of any that is refused.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/exported.h"
#include "exchange/imported.h"
#include "exchange/texts.h"
#include "require.h"

namespace kestrel::exchange {

inline void CheckFault(const Fault& fault, std::size_t bytes) {
  const std::string text = fault.Text();
  Require(text.starts_with("f"), "a refusal names the file");
  Require(text.size() > 5 && text.size() < 400, "a refusal is short");
  Require(IsUtf8(text), "and text");
  for (const char c : text) Require(static_cast<unsigned char>(c) >= ' ', "of one line");
  Require(fault.line.value_or(1) >= 1 && fault.line.value_or(1) <= bytes + 1, "the line is there");
  Require(fault.byte.value_or(0) <= bytes, "the byte is there");
}

inline void CheckRecord(const ImportedRecord& record, std::size_t bytes) {
  Require(!record.traces.empty(), "there is something to import");
  for (const ImportedTrace& trace : record.traces) {
    Require(!trace.values.empty() && trace.values.size() <= bytes, "values were in the file");
    Require(trace.values.size() == record.traces.front().values.size(), "traces are of one length");
    Require(std::ranges::all_of(trace.values, [](double v) { return std::isfinite(v); }),
            "values are numbers");
    Require(IsUtf8(trace.label), "labels are text");
  }
  Require(IsUtf8(record.title) && IsUtf8(record.note) && IsUtf8(record.unit) &&
              IsUtf8(record.quantity) && IsUtf8(record.timeText),
          "texts are text");
  Require(!record.step || (std::isfinite(*record.step) && *record.step > 0), "time goes on");
  Require(!record.gPerUnit || *record.gPerUnit > 0, "a unit is larger than nothing");
}

// A record of the sensor's words goes out and comes back the same.
inline void CheckReturn(const Record& record) {
  const auto file = Exported(std::vector{NotedRecord{.record = record}}, ExportFormat::Uff58b);
  if (!file) return;  // of an option that no sensor knows
  const auto again = Imported("g", *file);
  Require(static_cast<bool>(again), "what was exported is imported");
  const auto found = RecordOf(again->records.front(), {});
  Require(static_cast<bool>(found), "as a record");
  for (const Axis axis : kAxes) {
    Require(std::ranges::equal(found->Of(axis).raw.First(record.Points()),
                               record.Of(axis).raw.First(record.Points())),
            "of the same words");
  }
}

inline void CheckImport(std::string_view bytes) {
  const auto file = Imported("f", bytes);
  if (!file) return CheckFault(file.Why(), bytes.size());
  Require(!file->records.empty(), "there is a record");
  for (const ImportedRecord& imported : file->records) {
    CheckRecord(imported, bytes.size());
    static_cast<void>(UnknownsOf(imported));
    for (const bool words : {false, true}) {
      const auto record =
          RecordOf(imported, {.option = 1, .range = 2, .window = 1, .words = words});
      if (record) CheckReturn(*record);
    }
  }
}

}  // namespace kestrel::exchange
