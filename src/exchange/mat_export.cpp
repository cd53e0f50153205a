// Records as structs of a MAT-file: facts as fields, points as columns of X, Y and Z.
// SPDX-License-Identifier: MIT
#include "exchange/facts.h"
#include "exchange/mat_elements.h"
#include "exchange/writers.h"

namespace kestrel::exchange {
namespace {

std::string Tell(std::monostate /*unknown*/) {
  return MatNothing();
}
std::string Tell(bool value) {
  return MatLogical(value);
}
std::string Tell(std::int64_t value) {
  return MatNumbers("", {{static_cast<double>(value)}});
}
std::string Tell(float value) {
  return MatNumbers("", {{static_cast<double>(value)}});
}
std::string Tell(double value) {
  return MatNumbers("", {{value}});
}
std::string Tell(const std::string& text) {
  return MatText(text);
}
std::string Tell(const std::vector<std::string>& texts) {
  return MatTexts(texts);
}

// Doubles: whoever calculates with the words need not think of their width.
void AddPoints(std::vector<MatField>& fields, const Record& record) {
  std::vector<double> places;
  for (std::size_t i = 0; i < record.Points(); ++i) places.push_back(PlaceOf(record, i));
  std::vector<std::vector<double>> values;
  std::vector<std::vector<double>> words;
  for (const Axis axis : kAxes) {
    const auto data = record.Values(axis);
    const auto raw = record.Of(axis).raw.First(record.Points());
    values.emplace_back(data.begin(), data.end());
    words.emplace_back(raw.begin(), raw.end());
  }
  const bool isSpectrum = record.kind == RecordKind::Spectrum;
  fields.push_back({isSpectrum ? "frequency_hz" : "time_s", MatNumbers("", {places})});
  fields.push_back({"data_g", MatNumbers("", values)});
  fields.push_back({"raw", MatNumbers("", words)});
}

}  // namespace

std::string MatFile(std::span<const NotedRecord> records) {
  std::string file = MatHeader("MATLAB 5.0 MAT-file, vibration records of kestrel");
  for (std::size_t i = 0; i < records.size(); ++i) {
    std::vector<MatField> fields;
    for (const Fact& fact : FactsOf(records[i])) {
      fields.push_back(
          {fact.name, std::visit([](const auto& value) { return Tell(value); }, fact.value)});
    }
    AddPoints(fields, records[i].record);
    file += MatStruct("record" + std::to_string(i + 1), fields);
  }
  return file;
}

}  // namespace kestrel::exchange
