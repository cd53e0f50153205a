// Each column once, in the order of the table.
// SPDX-License-Identifier: MIT
#include "archive/record_row.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrel::archive {
namespace {

using database::Value;
using database::Values;

constexpr const char* kWideColumns = "wide_set, wide_wanted";
constexpr std::int64_t kStatusesKnown = 1;
constexpr std::int64_t kPeaksKnown = 2;

// Of tables of every version.
std::string FirstColumns() {
  return std::string(
             "uid, taken, deleted, kind, source, rec_info, rec_ctrl, scaled_range, lsb_weight, "
             "supply_v, temperature_c, record_count, ") +
         kAmendedColumns + ", stopped, count_before, stored_number, " + kRemarkColumns +
         ", rms_x, rms_y, rms_z, top_x, top_y, top_z";
}

// Of the table of records alone.
std::string OwnColumns(std::int64_t version) {
  return "r.id, " + FirstColumns() + ", " + (version < 2 ? "null, null" : kWideColumns);
}

// Puts the cells of a row one after another.
class Filling {
 public:
  Filling& Whole(std::int64_t number) { return Put(number); }
  Filling& Real(double number) { return Put(number); }
  Filling& Text(const std::string& text) { return Put(text); }
  Filling& Null() { return Put(std::monostate{}); }
  Filling& MaybeReal(const std::optional<double>& number) {
    return number ? Real(*number) : Null();
  }
  Filling& MaybeWhole(const std::optional<std::int32_t>& number) {
    return number ? Whole(*number) : Null();
  }
  Filling& All(Values more) {
    std::ranges::move(more, std::back_inserter(values_));
    return *this;
  }
  template <typename Cell>
  Filling& Put(Cell cell) {
    values_.emplace_back(std::move(cell));
    return *this;
  }
  [[nodiscard]] Values Take() { return std::move(values_); }

 private:
  Values values_;
};

Values LevelValues(const KeptLevels& levels) {
  Filling row;
  for (const auto& level : levels) level ? row.Real(level->rmsG) : row.Null();
  for (const auto& level : levels) level ? row.Real(level->peakG) : row.Null();
  return row.Take();
}

Values WideValues(const std::optional<WideMark>& wide) {
  Filling row;
  if (!wide) return row.Null().Null().Take();
  return row.Put(database::Bytes(wide->set.begin(), wide->set.end()))
      .Whole(std::int64_t{wide->wanted})
      .Take();
}

// Takes the cells of a row one after another.
class Cells {
 public:
  explicit Cells(database::Row row) : row_(row) {}

  std::int64_t Whole() { return database::Integer(Next()); }
  template <typename Number>
  Number As() {
    const std::int64_t number = Whole();
    const auto narrow = static_cast<Number>(number);
    if (narrow != number) {
      throw database::DatabaseError(database::Fault::Corrupt,
                                    std::to_string(number) + " is too large for its place");
    }
    return narrow;
  }
  double Real() { return database::Real(Next()); }
  const std::string& Text() { return database::Text(Next()); }
  template <typename Number>
  std::optional<Number> Maybe() {
    if (database::IsNull(row_[at_])) {
      ++at_;
      return std::nullopt;
    }
    if constexpr (std::is_floating_point_v<Number>)
      return Real();
    else
      return As<Number>();
  }
  const Value& Next() { return row_[at_++]; }

 private:
  database::Row row_;
  std::size_t at_ = 0;
};

void TakeSettings(Cells& cells, Record& record) {
  const auto recInfo = cells.As<std::int32_t>();
  record.settings = SettingsFromWords(recInfo, cells.As<std::int32_t>());
  record.scaledRange = cells.As<std::int16_t>();
  record.lsbWeight = cells.Real();
  record.conditions.supplyV = static_cast<float>(cells.Real());
  record.conditions.temperatureC = static_cast<float>(cells.Real());
  record.conditions.recordCount = cells.As<std::int32_t>();
}

void TakeAlarms(Cells& cells, Record& record) {
  const auto status = cells.Maybe<std::int32_t>();
  record.status = {.word = status.value_or(0), .known = status.has_value()};
  for (AxisAlarms& axis : record.alarms.axes) axis.status = cells.As<std::int32_t>();
  for (AxisAlarms& axis : record.alarms.axes) axis.peak = cells.As<std::int32_t>();
  for (AxisAlarms& axis : record.alarms.axes) axis.peakBin = cells.As<std::int32_t>();
  record.alarms.gPerPeakLsb = cells.Real();
  const std::int64_t known = cells.Whole();
  record.alarms.statusKnown = (known & kStatusesKnown) != 0;
  record.alarms.peaksKnown = (known & kPeaksKnown) != 0;
}

std::vector<std::string> TagsFrom(const std::string& text) {
  std::vector<std::string> tags;
  for (std::size_t from = 1; from < text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    tags.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  return tags;
}

void TakeRemarks(Cells& cells, Remarks& remarks) {
  remarks.machine = cells.Text();
  remarks.point = cells.Text();
  remarks.orientation = cells.Text();
  remarks.rpm = cells.Maybe<double>();
  remarks.note = cells.Text();
  remarks.tags = TagsFrom(cells.Text());
}

void TakeLevels(Cells& cells, KeptLevels& levels) {
  std::array<std::optional<double>, 3> all;
  std::ranges::generate(all, [&] { return cells.Maybe<double>(); });
  for (std::size_t axis = 0; axis < levels.size(); ++axis) {
    const auto& rms = all[axis];
    const auto peak = cells.Maybe<double>();
    if (rms && peak) levels[axis] = {.rmsG = *rms, .peakG = *peak};
  }
}

void TakeWide(Cells& cells, std::optional<WideMark>& wide) {
  const Value& set = cells.Next();
  const auto wanted = cells.Maybe<std::int32_t>();
  if (database::IsNull(set) || !wanted) return;
  wide = {.set = UidFromCell(set), .wanted = static_cast<unsigned>(*wanted)};
}

void TakeSource(Cells& cells, KeptRecord& kept) {
  SensorIdentity& sensor = kept.record.sensor;
  sensor.product = cells.As<std::int32_t>();
  sensor.interface = cells.Text();
  sensor.adapter = cells.Text();
  sensor.simulated = cells.Whole() != 0;
  kept.program = cells.Text();
  kept.bench = cells.Text();
}

}  // namespace

const std::string& RecordColumns() {
  static const std::string kColumns = FirstColumns() + ", " + kWideColumns;
  return kColumns;
}

std::string RowColumns(std::int64_t version) {
  return OwnColumns(version) +
         ", s.product, s.interface, s.adapter, s.simulated, s.program, s.bench";
}

std::string RowColumnsWithoutSource(std::int64_t version) {
  return OwnColumns(version) +
         ", cast(0 as bigint), cast('' as text), cast('' as text), cast(0 as bigint), cast('' as "
         "text), cast('' as text)";
}

Values RecordValues(const NewRecord& kept, std::int64_t source) {
  const Record& record = kept.record;
  Filling row;
  row.Put(database::Bytes(kept.uid.begin(), kept.uid.end()));
  row.Whole(Nanoseconds(record.time)).Null();
  row.Whole(record.kind == RecordKind::Time ? 1 : 0).Whole(source);
  row.Whole(record.settings.recInfo).Whole(record.settings.recCtrl);
  row.Whole(record.scaledRange).Real(record.lsbWeight);
  row.Real(record.conditions.supplyV).Real(record.conditions.temperatureC);
  row.Whole(record.conditions.recordCount).All(AmendedValues(record));
  row.Whole(record.origin.stopped ? 1 : 0);
  row.MaybeWhole(record.origin.countBefore).MaybeWhole(record.origin.stored);
  row.All(RemarkValues(kept.remarks)).All(LevelValues(LevelsFor(record)));
  row.All(WideValues(kept.wide));
  return row.Take();
}

Values SourceValues(const NewRecord& kept) {
  const SensorIdentity& sensor = kept.record.sensor;
  Filling row;
  row.Whole(sensor.product).Text(sensor.interface).Text(sensor.adapter);
  row.Whole(sensor.simulated ? 1 : 0).Text(kept.program).Text(kept.bench);
  return row.Take();
}

KeptRecord RecordFrom(database::Row row) {
  KeptRecord kept;
  Cells cells(row);
  kept.id = cells.Whole();
  kept.uid = UidFromCell(cells.Next());
  kept.record.time = TimeOf(cells.Whole());
  if (const auto deleted = cells.Maybe<std::int64_t>()) kept.deleted = TimeOf(*deleted);
  kept.record.kind = cells.Whole() == 1 ? RecordKind::Time : RecordKind::Spectrum;
  cells.Next();  // the number of its source
  TakeSettings(cells, kept.record);
  TakeAlarms(cells, kept.record);
  kept.record.origin.stopped = cells.Whole() != 0;
  kept.record.origin.countBefore = cells.Maybe<std::int32_t>();
  kept.record.origin.stored = cells.Maybe<int>();
  TakeRemarks(cells, kept.remarks);
  TakeLevels(cells, kept.levels);
  TakeWide(cells, kept.wide);
  TakeSource(cells, kept);
  return kept;
}

Uid UidFromCell(const Value& cell) {
  const database::Bytes& bytes = database::Blob(cell);
  Uid uid{};
  std::copy_n(bytes.begin(), std::min(bytes.size(), uid.size()), uid.begin());
  return uid;
}

Values AmendedValues(const Record& record) {
  const AlarmState& alarms = record.alarms;
  Filling row;
  record.status.known ? row.Whole(record.status.word) : row.Null();
  for (const AxisAlarms& axis : alarms.axes) row.Whole(axis.status);
  for (const AxisAlarms& axis : alarms.axes) row.Whole(axis.peak);
  for (const AxisAlarms& axis : alarms.axes) row.Whole(axis.peakBin);
  row.Real(alarms.gPerPeakLsb);
  row.Whole((alarms.statusKnown ? kStatusesKnown : 0) | (alarms.peaksKnown ? kPeaksKnown : 0));
  return row.Take();
}

Values RemarkValues(const Remarks& remarks) {
  std::string tags;
  for (const std::string& tag : CleanTags(remarks.tags)) {
    tags += tags.empty() ? TagLine(tag) : tag + "\n";
  }
  Filling row;
  row.Text(remarks.machine).Text(remarks.point).Text(remarks.orientation);
  const bool hasSpeed = remarks.rpm && std::isfinite(*remarks.rpm);
  row.MaybeReal(hasSpeed ? remarks.rpm : std::nullopt).Text(remarks.note).Text(tags);
  return row.Take();
}

std::string TagLine(const std::string& tag) {
  return "\n" + tag + "\n";
}

std::int64_t Nanoseconds(std::chrono::system_clock::time_point time) {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count();
}

std::chrono::system_clock::time_point TimeOf(std::int64_t nanoseconds) {
  return std::chrono::system_clock::time_point(
      std::chrono::duration_cast<std::chrono::system_clock::duration>(
          std::chrono::nanoseconds(nanoseconds)));
}

}  // namespace kestrel::archive
