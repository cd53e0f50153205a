// The parts of a choice that are more than a number or a word, as JSON and back.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "study/study_choice.h"

namespace kestrel::study {

using Json = nlohmann::json;

[[nodiscard]] std::optional<double> NumberOf(const Json& json, double least, double most);
[[nodiscard]] std::optional<int> WholeOf(const Json& json, int least, int most);
[[nodiscard]] std::optional<std::string> NameOf(const Json& json);

inline constexpr double kMostSeconds = 1'000;  // longer than any record

// None of what could not be chosen either.
[[nodiscard]] Json Tell(const CursorPlaces& places);
[[nodiscard]] std::optional<CursorPlaces> PlacesOf(const Json& json, double most);
[[nodiscard]] Json Tell(const analysis::Bearing& bearing);
[[nodiscard]] std::optional<analysis::Bearing> BearingOf(const Json& json);
[[nodiscard]] Json Tell(const analysis::GearMesh& mesh);
[[nodiscard]] std::optional<analysis::GearMesh> MeshOf(const Json& json);
[[nodiscard]] Json Tell(const analysis::FreeFrequency& free);
[[nodiscard]] std::optional<analysis::FreeFrequency> FreeOf(const Json& json);
[[nodiscard]] Json Tell(const FreeBand& band);
[[nodiscard]] std::optional<FreeBand> BandOf(const Json& json);
[[nodiscard]] Json Tell(const UserMarker& marker);
[[nodiscard]] std::optional<UserMarker> MarkerOf(const Json& json);
[[nodiscard]] Json Tell(const analysis::ZoneLimits& zones);
[[nodiscard]] std::optional<analysis::ZoneLimits> ZonesOf(const Json& json);
[[nodiscard]] std::optional<std::array<bool, 3>> AxesOf(const Json& json);

}  // namespace kestrel::study
