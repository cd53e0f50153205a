// The columns of a kept record: which there are, from a record and back.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "archive/kept_record.h"
#include "database/database.h"

namespace kestrel::archive {

// Of the table "record", but for its id; with commas.
[[nodiscard]] const std::string& RecordColumns();
// The same of "record" as r and "source" as s: id, columns, then the source's. Columns that tables
// of an earlier version have not got are null.
[[nodiscard]] std::string RowColumns(std::int64_t version);
// The same of "record" as r alone, with nothing for the source.
[[nodiscard]] std::string RowColumnsWithoutSource(std::int64_t version);

// What RecordColumns are filled with.
[[nodiscard]] database::Values RecordValues(const NewRecord& record, std::int64_t source);
// product, interface, adapter, simulated, program, bench.
[[nodiscard]] database::Values SourceValues(const NewRecord& record);

// From a row of RowColumns. The points are 0. Throws DatabaseError.
[[nodiscard]] KeptRecord RecordFrom(database::Row row);

// Throws DatabaseError where a cell holds no bytes.
[[nodiscard]] Uid UidFromCell(const database::Value& cell);

// What is known of a record some time after its points.
[[nodiscard]] database::Values AmendedValues(const Record& record);
inline constexpr const char* kAmendedColumns =
    "status, alarm_x, alarm_y, alarm_z, peak_x, peak_y, peak_z, peak_bin_x, peak_bin_y, "
    "peak_bin_z, peak_weight, alarms_known";

// machine, point, orientation, rpm, note, tags.
[[nodiscard]] database::Values RemarkValues(const Remarks& remarks);
inline constexpr const char* kRemarkColumns = "machine, point, orientation, rpm, note, tags";

// A tag as the column "tags" holds it among others: between lines' ends.
[[nodiscard]] std::string TagLine(const std::string& tag);

[[nodiscard]] std::int64_t Nanoseconds(std::chrono::system_clock::time_point time);
[[nodiscard]] std::chrono::system_clock::time_point TimeOf(std::int64_t nanoseconds);

}  // namespace kestrel::archive
