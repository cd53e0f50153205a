// Records as datasets 58 of a universal file, column by column as FORTRAN reads them.
// SPDX-License-Identifier: MIT
#include <bit>
#include <cstdint>

#include "exchange/facts.h"
#include "exchange/texts.h"
#include "exchange/uff/layout.h"
#include "exchange/writers.h"
#include "numeric/number_format.h"
#include "record/utc_time.h"

namespace kestrel::exchange {
namespace {

std::string Whole(std::int64_t value, std::size_t columns) {
  return AtRight(std::to_string(value), columns);
}

// A line that FORTRAN reads as text. An empty one would be taken for a line that is missing, and
// "-1" for the end of the dataset.
std::string IdLine(std::string_view text) {
  const std::string line = Shortened(OneLine(CleanUtf8(text)), kUffLine);
  if (line.empty()) return "NONE\n";
  return line == "-1" ? "\"-1\"\n" : line + "\n";
}

// "14-MAR-24 08:26:53  2024-03-14T08:26:53.000Z": what the format knows, and the whole moment.
std::string TimeLine(std::chrono::system_clock::time_point time) {
  if (time.time_since_epoch().count() == 0) return "NONE";
  static constexpr std::array<const char*, 12> kMonths{"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                       "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
  const std::string iso = UtcText(time);
  const std::chrono::year_month_day date{std::chrono::floor<std::chrono::days>(time)};
  const unsigned month = static_cast<unsigned>(date.month()) - 1;
  return iso.substr(8, 2) + "-" + kMonths.at(month) + "-" + iso.substr(2, 2) + " " +
         iso.substr(11, 8) + "  " + iso;
}

// Words with blanks between them, as many as fit into a line.
class Words {
 public:
  explicit Words(std::string first) : line_(std::move(first)) {}
  void Add(const std::string& name, const std::string& value) {
    const std::string word = " " + name + "=" + value;
    if (line_.size() + word.size() <= kUffLine) line_ += word;
  }
  [[nodiscard]] const std::string& Line() const { return line_; }

 private:
  std::string line_;
};

std::string SettingsLine(const Record& record) {
  Words words(kUffOwnSettings);
  words.Add("INFO", Hex(record.settings.recInfo));
  words.Add("CTRL", Hex(record.settings.recCtrl));
  words.Add("SCALE", std::to_string(record.scaledRange));
  words.Add("LSB", ExactText(record.lsbWeight));
  words.Add("STEP", ExactText(StepOf(record)));
  return words.Line();
}

// Which record of how many it is comes first: a reader can tell where some are missing.
std::string ConditionsLine(const Record& record, std::int64_t number, std::size_t count) {
  Words words(kUffOwnConditions);
  words.Add("REC", std::to_string(number) + "/" + std::to_string(count));
  words.Add("SUPPLY", ExactText(record.conditions.supplyV));
  words.Add("TEMP", ExactText(record.conditions.temperatureC));
  words.Add("COUNT", std::to_string(record.conditions.recordCount));
  if (record.status.known) words.Add("STATUS", Hex(record.status.word));
  words.Add("NEW", record.IsNew() ? "1" : "0");
  return words.Line();
}

std::string NoteLine(const RecordNote& note) {
  std::string line;
  const auto add = [&line](const std::string& part) {
    if (!part.empty()) line += (line.empty() ? "" : "; ") + part;
  };
  add(note.machine);
  add(note.point);
  if (note.speedRpm) add(ExactText(*note.speedRpm) + " rpm");
  add(note.note);
  for (const std::string& tag : note.tags) add(tag);
  add(note.orientation);
  return line;
}

std::string AxisLine(int type, std::string_view label, std::string_view unit) {
  return Whole(type, 10) + "    0    0    0 " + AtLeft(label, 20) + " " + AtLeft(unit, 20) + "\n";
}

// One axis of a record, and which function of the file it is.
struct Function {
  const NotedRecord& noted;
  Axis axis = Axis::X;
  std::int64_t number = 1;
  std::int64_t node = 1;  // the record's number
  std::size_t records = 1;

  [[nodiscard]] const Record& Rec() const { return noted.record; }
  [[nodiscard]] bool IsSpectrum() const { return Rec().kind == RecordKind::Spectrum; }
};

// Records 1 to 11.
std::string Header(const Function& function) {
  const Record& record = function.Rec();
  const bool isSpectrum = function.IsSpectrum();
  const std::string title = std::string(1, Letter(function.axis)) + " acceleration, " +
                            (isSpectrum ? "spectrum" : "time record") + " of the sensor, in g";
  const std::string dof = Whole(isSpectrum ? kUffSpectrum : kUffTimeResponse, 5) +
                          Whole(function.number, 10) + Whole(0, 5) + Whole(0, 10) + " " +
                          AtLeft("NONE", 10) + Whole(function.node, 10) +
                          Whole(static_cast<int>(function.axis) + 1, 4) + " " + AtLeft("NONE", 10) +
                          Whole(0, 10) + Whole(0, 4) + "\n";
  const std::string form = Whole(kUffRealDouble, 10) +
                           Whole(static_cast<std::int64_t>(record.Points()), 10) + Whole(1, 10) +
                           FortranText(0, kUffSingleColumns, kUffSingleDecimals) +
                           FortranText(StepOf(record), kUffSingleColumns, kUffSingleDecimals) +
                           FortranText(0, kUffSingleColumns, kUffSingleDecimals) + "\n";
  const std::string none = AxisLine(kUffUnknown, "NONE", "NONE");
  return IdLine(title) + IdLine(NoteLine(function.noted.note)) +
         IdLine(TimeLine(TimeOf(function.noted))) + IdLine(SettingsLine(record)) +
         IdLine(ConditionsLine(record, function.node, function.records)) + dof + form +
         (isSpectrum ? AxisLine(kUffFrequency, "Frequency", "Hz")
                     : AxisLine(kUffTime, "Time", "s")) +
         AxisLine(kUffAcceleration, "Acceleration", "g") + none + none;
}

std::string AsciiDataset(const Function& function) {
  std::string text = std::string(kUffMark) + "\n" + Whole(58, 6) + "\n" + Header(function);
  std::size_t across = 0;  // records fill their last line
  for (const double value : function.Rec().Values(function.axis)) {
    text += FortranText(value, kUffDoubleColumns, kUffDoubleDecimals);
    if (++across % kUffDoubleAcross == 0) text += "\n";
  }
  return text + kUffMark + "\n";
}

// The closing mark follows the data at once.
std::string BinaryDataset(const Function& function) {
  constexpr int kLowByteFirst = 1;
  constexpr int kIeee754 = 2;
  const auto values = function.Rec().Values(function.axis);
  std::string text = std::string(kUffMark) + "\n" + Whole(58, 6) + "b" + Whole(kLowByteFirst, 6) +
                     Whole(kIeee754, 6) + Whole(kUffHeaderLines, 12) +
                     Whole(static_cast<std::int64_t>(values.size() * sizeof(double)), 12) +
                     Whole(0, 6) + Whole(0, 6) + Whole(0, 12) + Whole(0, 12) + "\n" +
                     Header(function);
  for (const double value : values) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    for (unsigned i = 0; i < sizeof bits; ++i) text += static_cast<char>(bits >> (8 * i) & 0xFFU);
  }
  return text + kUffMark + "\n";
}

template <typename Dataset>
std::string AllOf(std::span<const NotedRecord> records, Dataset dataset) {
  std::string file;
  std::int64_t node = 0;
  std::int64_t number = 0;
  for (const NotedRecord& noted : records) {
    ++node;
    for (const Axis axis : kAxes)
      file += dataset(Function{noted, axis, ++number, node, records.size()});
  }
  return file;
}

}  // namespace

std::string UffAscii(std::span<const NotedRecord> records) {
  return AllOf(records, AsciiDataset);
}

std::string UffBinary(std::span<const NotedRecord> records) {
  return AllOf(records, BinaryDataset);
}

}  // namespace kestrel::exchange
