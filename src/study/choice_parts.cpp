// How cursor places, bearings, bands, markers and limits are told as JSON and read.
// SPDX-License-Identifier: MIT
#include "study/choice_parts.h"

#include <algorithm>
#include <cmath>

namespace kestrel::study {
namespace {

constexpr int kMostElements = 200;
constexpr int kMostTeeth = 10'000;

// Null where there is no such field.
Json Field(const Json& json, const char* name) {
  if (!json.is_object()) return nullptr;
  const auto found = json.find(name);
  return found == json.end() ? Json() : *found;
}

std::optional<double> AnyOf(const Json& json, const char* name) {
  constexpr double kMost = 1e12;
  return NumberOf(Field(json, name), -kMost, kMost);
}

}  // namespace

std::optional<double> NumberOf(const Json& json, double least, double most) {
  if (!json.is_number()) return std::nullopt;
  const auto value = json.get<double>();
  return value >= least && value <= most ? std::optional(value) : std::nullopt;
}

std::optional<int> WholeOf(const Json& json, int least, int most) {
  const auto value = NumberOf(json, least, most);
  return value && std::floor(*value) == *value ? std::optional(static_cast<int>(*value))
                                               : std::nullopt;
}

std::optional<std::string> NameOf(const Json& json) {
  return json.is_string() ? std::optional(json.get<std::string>()) : std::nullopt;
}

Json Tell(const CursorPlaces& places) {
  const auto tell = [](const std::optional<double>& place) {
    return place ? Json(*place) : Json();
  };
  return Json::array({tell(places.at), tell(places.second)});
}

std::optional<CursorPlaces> PlacesOf(const Json& json, double most) {
  if (!json.is_array() || json.size() != 2) return std::nullopt;
  const CursorPlaces places{NumberOf(json[0], 0, most), NumberOf(json[1], 0, most)};
  const bool areRead =
      places.at.has_value() != json[0].is_null() && places.second.has_value() != json[1].is_null();
  return areRead ? std::optional(places) : std::nullopt;
}

Json Tell(const analysis::Bearing& bearing) {
  Json json{{"name", bearing.name},
            {"outer", bearing.factors.outer},
            {"inner", bearing.factors.inner},
            {"spin", bearing.factors.spin},
            {"cage", bearing.factors.cage}};
  if (!bearing.geometry) return json;
  json["elements"] = bearing.geometry->elements;
  json["element diameter"] = bearing.geometry->elementDiameter;
  json["pitch diameter"] = bearing.geometry->pitchDiameter;
  json["contact degrees"] = bearing.geometry->contactDegrees;
  return json;
}

// The geometry where there is one decides.
std::optional<analysis::Bearing> BearingOf(const Json& json) {
  const auto name = NameOf(Field(json, "name"));
  if (!name) return std::nullopt;
  analysis::Bearing bearing{.name = *name,
                            .factors = {.outer = AnyOf(json, "outer").value_or(0),
                                        .inner = AnyOf(json, "inner").value_or(0),
                                        .spin = AnyOf(json, "spin").value_or(0),
                                        .cage = AnyOf(json, "cage").value_or(0)},
                            .geometry = {}};
  if (json.contains("elements")) {
    const analysis::BearingGeometry geometry{
        .elements = WholeOf(Field(json, "elements"), 1, kMostElements).value_or(0),
        .elementDiameter = AnyOf(json, "element diameter").value_or(0),
        .pitchDiameter = AnyOf(json, "pitch diameter").value_or(0),
        .contactDegrees = AnyOf(json, "contact degrees").value_or(-1)};
    const auto factors = analysis::FactorsOf(geometry);
    if (!factors) return std::nullopt;
    bearing.geometry = geometry;
    bearing.factors = *factors;
  }
  return analysis::AreFactors(bearing.factors) ? std::optional(bearing) : std::nullopt;
}

Json Tell(const analysis::GearMesh& mesh) {
  return {{"name", mesh.name}, {"teeth", mesh.teeth}};
}

std::optional<analysis::GearMesh> MeshOf(const Json& json) {
  const auto name = NameOf(Field(json, "name"));
  const auto teeth = WholeOf(Field(json, "teeth"), 1, kMostTeeth);
  if (!name || !teeth) return std::nullopt;
  return analysis::GearMesh{.name = *name, .teeth = *teeth};
}

Json Tell(const analysis::FreeFrequency& free) {
  return {{"name", free.name}, {"Hz", free.hz}};
}

std::optional<analysis::FreeFrequency> FreeOf(const Json& json) {
  const auto name = NameOf(Field(json, "name"));
  const auto hz = NumberOf(Field(json, "Hz"), 0, kMostHz);
  if (!name || !hz || !IsFrequency(*hz)) return std::nullopt;
  return analysis::FreeFrequency{.name = *name, .hz = *hz};
}

Json Tell(const FreeBand& band) {
  return {{"name", band.name}, {"from Hz", band.fromHz}, {"to Hz", band.toHz}};
}

std::optional<FreeBand> BandOf(const Json& json) {
  const auto name = NameOf(Field(json, "name"));
  const auto from = NumberOf(Field(json, "from Hz"), 0, kMostHz);
  const auto to = NumberOf(Field(json, "to Hz"), 0, kMostHz);
  if (!name || !from || !to || *from >= *to) return std::nullopt;
  return FreeBand{.name = *name, .fromHz = *from, .toHz = *to};
}

Json Tell(const UserMarker& marker) {
  return {{"Hz", marker.hz}, {"text", marker.text}};
}

std::optional<UserMarker> MarkerOf(const Json& json) {
  const auto hz = NumberOf(Field(json, "Hz"), 0, kMostHz);
  const auto text = NameOf(Field(json, "text"));
  if (!hz || !text) return std::nullopt;
  return UserMarker{.hz = *hz, .text = *text};
}

Json Tell(const analysis::ZoneLimits& zones) {
  return {{"name", zones.name}, {"ab", zones.ab}, {"bc", zones.bc}, {"cd", zones.cd}};
}

std::optional<analysis::ZoneLimits> ZonesOf(const Json& json) {
  const auto name = NameOf(Field(json, "name"));
  const analysis::ZoneLimits zones{.name = name.value_or(""),
                                   .ab = AnyOf(json, "ab").value_or(0),
                                   .bc = AnyOf(json, "bc").value_or(0),
                                   .cd = AnyOf(json, "cd").value_or(0)};
  return name && analysis::AreLimits(zones) ? std::optional(zones) : std::nullopt;
}

std::optional<std::array<bool, 3>> AxesOf(const Json& json) {
  if (!json.is_array() || json.size() != 3) return std::nullopt;
  if (!std::ranges::all_of(json, [](const Json& part) { return part.is_boolean(); })) {
    return std::nullopt;
  }
  return std::array{json[0].get<bool>(), json[1].get<bool>(), json[2].get<bool>()};
}

}  // namespace kestrel::study
