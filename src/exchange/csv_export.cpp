// Records as a table that says what its columns are: facts in comment lines above it.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "exchange/facts.h"
#include "exchange/texts.h"
#include "exchange/writers.h"

namespace kestrel::exchange {
namespace {

constexpr const char* kLineBreak = "\r\n";

// One line, so that it can be undone: a line break is "\n", a carriage return "\r", a backslash
// "\\".
std::string Escaped(std::string_view text) {
  std::string line;
  for (const char c : CleanUtf8(text)) {
    if (c == '\\') {
      line += "\\\\";
    } else if (c == '\n') {
      line += "\\n";
    } else if (c == '\r') {
      line += "\\r";
    } else {
      line += c;
    }
  }
  return line;
}

std::string Tell(std::monostate /*unknown*/) {
  return "";
}
std::string Tell(bool value) {
  return value ? "true" : "false";
}
std::string Tell(std::int64_t value) {
  return std::to_string(value);
}
std::string Tell(float value) {
  return ExactText(value);
}
std::string Tell(double value) {
  return ExactText(value);
}
std::string Tell(const std::string& text) {
  return Escaped(text);
}
std::string Tell(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& text : texts) line += (line.empty() ? "" : "; ") + Escaped(text);
  return line;
}

std::string FactLines(const NotedRecord& noted, std::size_t number) {
  std::string text;
  for (const Fact& fact : FactsOf(noted)) {
    const std::string value = std::visit([](const auto& v) { return Tell(v); }, fact.value);
    text += "# record " + std::to_string(number) + ", " + fact.name + ":" +
            (value.empty() ? "" : " ") + value + kLineBreak;
  }
  return text;
}

// Which columns of places a table has.
struct Places {
  bool frequency = false;
  bool time = false;
};

Places PlacesOf(std::span<const NotedRecord> records) {
  Places places;
  for (const NotedRecord& noted : records) {
    (noted.record.kind == RecordKind::Spectrum ? places.frequency : places.time) = true;
  }
  return places;
}

std::string Heading(const Places& places) {
  std::string line = "record,point";
  if (places.frequency) line += ",frequency_hz";
  if (places.time) line += ",time_s";
  return line + ",x_g,y_g,z_g,x_raw,y_raw,z_raw" + kLineBreak;
}

std::string PointLine(const Record& record, std::size_t number, std::size_t point,
                      const Places& places) {
  const bool isSpectrum = record.kind == RecordKind::Spectrum;
  const std::string place = ExactText(PlaceOf(record, point));
  std::string line = std::to_string(number) + "," + std::to_string(point);
  if (places.frequency) line += "," + (isSpectrum ? place : "");
  if (places.time) line += "," + (isSpectrum ? "" : place);
  const auto at = static_cast<int>(point);
  for (const Axis axis : kAxes) line += "," + ExactText(record.Of(axis).data(at));
  for (const Axis axis : kAxes) line += "," + ExactText(record.Of(axis).raw(at));
  return line + kLineBreak;
}

}  // namespace

std::string CsvFile(std::span<const NotedRecord> records) {
  std::string text = std::string("# kestrel records, version 1") + kLineBreak;
  text +=
      std::string("# UTF-8; \\n, \\r and \\\\ stand for line breaks and a backslash") + kLineBreak;
  for (std::size_t i = 0; i < records.size(); ++i) text += FactLines(records[i], i + 1);
  const Places places = PlacesOf(records);
  text += Heading(places);
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Record& record = records[i].record;
    for (std::size_t point = 0; point < record.Points(); ++point) {
      text += PointLine(record, i + 1, point, places);
    }
  }
  return text;
}

}  // namespace kestrel::exchange
