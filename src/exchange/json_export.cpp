// Records as JSON: facts by name, points by axis.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>

#include "exchange/facts.h"
#include "exchange/texts.h"
#include "exchange/writers.h"

namespace kestrel::exchange {
namespace {

using Json = nlohmann::ordered_json;

// Single precision as the shortest number that is read as the same one.
Json Tell(float value) {
  return Json::parse(ExactText(value), nullptr, false);
}
Json Tell(std::monostate /*unknown*/) {
  return nullptr;
}
Json Tell(const std::string& text) {
  return CleanUtf8(text);
}
Json Tell(const std::vector<std::string>& texts) {
  Json list = Json::array();
  for (const std::string& text : texts) list.push_back(CleanUtf8(text));
  return list;
}
template <typename Value>
Json Tell(Value value) {
  return value;
}

// A word without a fraction, which all words of a sensor are.
Json WordJson(double word) {
  const auto whole = static_cast<std::int64_t>(std::clamp(word, -1e15, 1e15));
  return static_cast<double>(whole) == word ? Json(whole) : Json(word);
}

Json RecordJson(const NotedRecord& noted) {
  const Record& record = noted.record;
  Json json;
  for (const Fact& fact : FactsOf(noted)) {
    json[fact.name] = std::visit([](const auto& value) { return Tell(value); }, fact.value);
  }
  const bool isSpectrum = record.kind == RecordKind::Spectrum;
  Json& places = json[isSpectrum ? "frequency_hz" : "time_s"] = Json::array();
  for (std::size_t i = 0; i < record.Points(); ++i) places.push_back(PlaceOf(record, i));
  for (const Axis axis : kAxes) {
    Json& points = json["axes"][std::string(1, Letter(axis))];
    points["data_g"] = record.Values(axis);
    points["raw"] = Json::array();
    for (const double word : record.Of(axis).raw.First(record.Points())) {
      points["raw"].push_back(WordJson(word));
    }
  }
  return json;
}

}  // namespace

std::string JsonFile(std::span<const NotedRecord> records) {
  Json json{{"format", "kestrel records"}, {"format_version", 1}, {"records", Json::array()}};
  for (const NotedRecord& noted : records) json["records"].push_back(RecordJson(noted));
  return json.dump(1) + "\n";
}

}  // namespace kestrel::exchange
