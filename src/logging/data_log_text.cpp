// Header, flags and columns of a data-log file, to the letter.
// SPDX-License-Identifier: MIT
#include "logging/data_log_text.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "numeric/number_format.h"
#include "record/status_flags.h"

namespace kestrel {
namespace {

constexpr const char* kLineBreak = "\r\n";

class Writer {
 public:
  explicit Writer(const DataLogFormat& format) : format_(format) {}

  void Line(const std::string& text) { text_ += text + kLineBreak; }
  void Pair(const std::string& title, const std::string& value) {
    Line(title + format_.separator + value);
  }

  [[nodiscard]] std::string Number(double value) const { return Marked(GeneralNumber(value)); }
  [[nodiscard]] std::string Number(float value) const { return Marked(GeneralNumber(value)); }
  [[nodiscard]] std::string Take() { return std::move(text_); }

 private:
  [[nodiscard]] std::string Marked(std::string number) const {
    std::replace(number.begin(), number.end(), '.', format_.decimalMark);
    return number;
  }

  const DataLogFormat& format_;
  std::string text_;
};

// STATUS bit 14 first.
template <typename Texts>
std::string FlagLine(const Texts& texts, const std::string& separator) {
  std::string line;
  for (std::size_t bit = kStatusFlags; bit-- > 0;) {
    line += texts[bit];
    if (bit > 0) line += separator;
  }
  return line;
}

}  // namespace

DataLogFormat FormatFor(char decimalMark) {
  if (decimalMark == ',') return {',', "\t", ".txt"};
  return {decimalMark, ",", ".csv"};
}

std::string DataLogHeading(std::int16_t width, const std::string& separator) {
  std::array<const char*, 3> titles{};
  if (width == kTimeWidth) titles = {"X Acc.", "Y Acc.", "Z Acc."};
  if (width == kFftWidth) titles = {"X axis", "Y Axis.", "Z axis."};
  std::string line = "Sample #" + separator;
  for (const char* title : titles) {
    if (title != nullptr) line += title + separator;
  }
  return line;
}

std::string DataLogText(const Record& record, const DataLogFormat& format, const DataLogHead& head,
                        DataLogValues values) {
  Writer file(format);
  file.Line("File Name," + head.baseName + format.extension);
  file.Pair("Date", head.date);
  file.Pair("Time", head.time);
  file.Pair("AVG_Cnt", file.Number(std::exp2(head.averageExponent)));
  file.Pair("Capt_Supply", file.Number(record.conditions.supplyV));
  file.Pair("Capt_Temp 'C", file.Number(record.conditions.temperatureC));
  file.Line(" ");
  file.Line("Staus  Register");
  file.Line(FlagLine(kDataLogFlagNames, format.separator));
  file.Line(FlagLine(StatusTexts(record.status), format.separator));
  file.Line(" ");
  file.Line(DataLogHeading(record.Width(), format.separator));
  const auto columnOf = [&](Axis axis) -> const RecordArray& {
    const AxisRecord& points = record.Of(axis);
    return values == DataLogValues::RawWords ? points.raw : points.data;
  };
  const RecordArray& x = columnOf(Axis::X);
  const RecordArray& y = columnOf(Axis::Y);
  const RecordArray& z = columnOf(Axis::Z);
  for (int i = 0; i <= record.Width(); ++i) {
    file.Line(std::to_string(i) + format.separator + file.Number(x(i)) + format.separator +
              file.Number(y(i)) + format.separator + file.Number(z(i)));
  }
  return file.Take();
}

}  // namespace kestrel
