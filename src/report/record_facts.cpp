// Facts of a record in words, and its alarm words taken apart.
// SPDX-License-Identifier: MIT
#include "report/record_facts.h"

#include <algorithm>

#include "analysis/levels.h"
#include "analysis/windows.h"
#include "numeric/number_format.h"
#include "numeric/number_texts.h"
#include "record/alarm_bits.h"
#include "record/frequency.h"
#include "record/record_line.h"
#include "record/record_notices.h"
#include "report/texts.h"

namespace kestrel::report {
namespace {

constexpr const char* kNotNoted = "not noted";

bool IsSpectrum(const Record& record) {
  return record.kind == RecordKind::Spectrum;
}

void Add(std::vector<Fact>& facts, const char* name, std::string value) {
  if (!value.empty()) facts.push_back({name, std::move(value)});
}

std::string RateText(const Record& record) {
  const int option = record.settings.option;
  return analysis::NumberText(SampleFrequency(option), 1) + " Hz, option " + std::to_string(option);
}

std::string LengthText(const Record& record) {
  const int option = record.settings.option;
  const auto points = static_cast<double>(record.Points());
  if (IsSpectrum(record)) {
    return StepText(record) + ", " + std::to_string(record.Points()) + " bins to " +
           analysis::HertzText((points - 1) * BinWidth(option));
  }
  return StepText(record) + ", " + std::to_string(record.Points()) + " samples, " +
         analysis::SecondsText(points / SampleFrequency(option));
}

std::string WindowText(const Record& record) {
  return std::string(analysis::WindowOfCode(record.settings.window).name);
}

std::string CountText(const Record& record) {
  if (record.origin.stored) return "stored record " + std::to_string(*record.origin.stored);
  return std::to_string(record.conditions.recordCount);
}

std::vector<std::string> BandsWith(const AxisAlarms& alarms, int (*bit)(int)) {
  std::vector<std::string> bands;
  for (int band = 1; band <= kAlarmBands; ++band) {
    if ((alarms.status >> bit(band) & 1) != 0) bands.push_back(std::to_string(band));
  }
  return bands;
}

bool IsStatusKnown(const Record& record) {
  return record.alarms.statusKnown ||
         std::ranges::any_of(record.alarms.axes, [](const auto& axis) { return axis.status != 0; });
}

std::string InBands(const char* what, const std::vector<std::string>& bands) {
  if (bands.empty()) return "";
  return std::string(what) + (bands.size() == 1 ? " in band " : " in bands ") + Listed(bands);
}

std::string StateOfBand(const AxisAlarms& alarms, int band) {
  if ((alarms.status >> FaultBit(band) & 1) != 0) return "fault";
  return (alarms.status >> WarningBit(band) & 1) != 0 ? "warning" : "no alarm";
}

std::vector<std::string> AlarmRow(const Record& record, Axis axis) {
  const AlarmState& alarms = record.alarms;
  std::vector<std::string> row{std::string(1, Letter(axis))};
  for (int band = 1; band <= kAlarmBands; ++band) {
    row.push_back(StateOfBand(alarms.Of(axis), band));
  }
  if (!alarms.peaksKnown) return row;
  const double hz = alarms.Of(axis).peakBin * BinWidth(record.settings.option);
  row.push_back(analysis::SignificantText(alarms.PeakG(axis)));
  row.push_back(analysis::WithBound(hz, BinWidth(record.settings.option) / 2).value);
  return row;
}

}  // namespace

std::vector<Fact> PlaceFacts(const archive::KeptRecord& kept) {
  const archive::Remarks& remarks = kept.remarks;
  const auto noted = [](const std::string& text) {
    const std::string line = OneLine(text);
    return line.empty() ? std::string(kNotNoted) : line;
  };
  std::vector<Fact> facts;
  Add(facts, "Machine", noted(remarks.machine));
  Add(facts, "Measuring point", noted(remarks.point));
  Add(facts, "Orientation", OneLine(remarks.orientation));
  if (remarks.rpm) Add(facts, "Shaft speed", GeneralNumber(*remarks.rpm) + " rpm");
  Add(facts, "Taken", kept.record.Taken() ? MomentText(kept.record.time) : "time not known");
  std::vector<std::string> tags;
  for (const std::string& tag : remarks.tags) tags.push_back(OneLine(tag));
  Add(facts, "Tags", Listed(tags));
  return facts;
}

std::vector<Fact> SettingFacts(const archive::KeptRecord& kept) {
  const Record& record = kept.record;
  std::vector<Fact> facts;
  Add(facts, "Kind", KindText(record));
  Add(facts, "Signal range", "0 to " + GeneralNumber(FullScaleOf(record.settings.range)) + " g");
  if (IsSpectrum(record)) {
    Add(facts, "FFT window", WindowText(record));
    Add(facts, "Averages", std::to_string(std::max<int>(record.settings.averages, 1)));
  }
  Add(facts, "Sample rate", RateText(record));
  Add(facts, "Resolution", LengthText(record));
  Add(facts, "Supply", FixedNumber(static_cast<double>(record.conditions.supplyV), 3) + " V");
  Add(facts, "Temperature",
      FixedNumber(static_cast<double>(record.conditions.temperatureC), 1) + " °C");
  Add(facts, "Record count", CountText(record));
  if (record.status.known) Add(facts, "Status", FlagsText(record.status));
  Add(facts, "Record information", Hex(record.settings.recInfo) + " hexadecimal");
  if (record.sensor.product != 0) Add(facts, "Sensor", OneLine(SensorText(record.sensor)));
  if (!kept.program.empty()) Add(facts, "Program version", OneLine(kept.program));
  Add(facts, "Computer", OneLine(kept.bench));
  if (kept.id > 0) Add(facts, "Archive number", std::to_string(kept.id));
  return facts;
}

std::string PlaceText(const archive::Remarks& remarks) {
  const std::string machine = OneLine(remarks.machine);
  const std::string point = OneLine(remarks.point);
  return machine.empty() || point.empty() ? machine + point : machine + ", " + point;
}

std::string KindText(const Record& record) {
  return IsSpectrum(record) ? "Spectrum" : "Time record";
}

std::vector<std::string> NoticesOf(const Record& record) {
  std::vector<std::string> notices;
  for (const RecordNotice& notice : RecordNotices(record, {})) {
    // A report reads by the record's own scale, whatever it is shown by.
    if (notice.kind != NoticeKind::WrongScale) notices.push_back(notice.what + ". " + notice.means);
  }
  return notices;
}

std::string AlarmText(const Record& record, Axis axis) {
  if (!IsStatusKnown(record)) return "not read";
  const AxisAlarms& alarms = record.alarms.Of(axis);
  const std::string fault = InBands("fault", BandsWith(alarms, FaultBit));
  const std::string warning = InBands("warning", BandsWith(alarms, WarningBit));
  if (fault.empty() && warning.empty()) return "none";
  return fault.empty() || warning.empty() ? fault + warning : fault + ", " + warning;
}

Section AlarmSection(const Record& record) {
  Section section{.heading = "Alarm state"};
  if (!IsStatusKnown(record)) {
    section.paragraphs.push_back(
        IsSpectrum(record) ? "The alarm state was not read with this record."
                           : "The sensor judges spectra; a time record has no alarm state.");
    return section;
  }
  Table table{.columns = {{.head = "Axis"}}};
  for (int band = 1; band <= kAlarmBands; ++band) {
    table.columns.push_back({.head = "Band " + std::to_string(band)});
  }
  if (record.alarms.peaksKnown) {
    table.columns.push_back({.head = "Peak", .unit = "g", .isNumber = true});
    table.columns.push_back({.head = "at", .unit = "Hz", .isNumber = true});
  }
  for (const Axis axis : kAxes) table.rows.push_back(AlarmRow(record, axis));
  section.tables.push_back(std::move(table));
  section.remarks.push_back("As the sensor reported it with this record.");
  return section;
}

}  // namespace kestrel::report
