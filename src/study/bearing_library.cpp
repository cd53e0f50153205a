// Bearings to and from text.
// SPDX-License-Identifier: MIT
#include "study/bearing_library.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

#include "numeric/number_parse.h"

namespace kestrel::study {
namespace {

constexpr const char* kHeads =
    "name\touter\tinner\tspin\tcage\telements\telement diameter\tpitch diameter\tcontact degrees";
constexpr std::size_t kFactorCells = 5;
constexpr std::size_t kAllCells = 9;

std::string NumberOf(double value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

std::string NameOf(std::string name) {
  std::ranges::replace_if(
      name, [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return name;
}

std::string LineOf(const analysis::Bearing& bearing) {
  const analysis::BearingFactors& factors = bearing.factors;
  std::string line = NameOf(bearing.name);
  for (const double factor : {factors.outer, factors.inner, factors.spin, factors.cage}) {
    line += "\t" + NumberOf(factor);
  }
  if (!bearing.geometry) return line;
  const analysis::BearingGeometry& geometry = *bearing.geometry;
  return line + "\t" + std::to_string(geometry.elements) + "\t" +
         NumberOf(geometry.elementDiameter) + "\t" + NumberOf(geometry.pitchDiameter) + "\t" +
         NumberOf(geometry.contactDegrees);
}

std::vector<std::string_view> Parts(std::string_view text, char mark) {
  std::vector<std::string_view> parts;
  while (true) {
    const std::size_t end = text.find(mark);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

// The geometry where there is one decides; a slip in the factors beside it does no harm.
std::optional<analysis::Bearing> BearingOf(const std::vector<std::string_view>& cells) {
  const bool isSized = cells.size() == kFactorCells || cells.size() == kAllCells;
  if (!isSized || cells.front().empty()) return std::nullopt;
  std::vector<double> numbers;
  for (std::size_t i = 1; i < cells.size(); ++i) {
    const auto number = WholeTextNumber(cells[i]);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  analysis::Bearing bearing{.name = std::string(cells.front()),
                            .factors = {numbers[0], numbers[1], numbers[2], numbers[3]}};
  if (cells.size() == kAllCells) {
    const bool isCount =
        numbers[4] >= 1 && numbers[4] <= 1000 && std::floor(numbers[4]) == numbers[4];
    if (!isCount) return std::nullopt;
    bearing.geometry =
        analysis::BearingGeometry{static_cast<int>(numbers[4]), numbers[5], numbers[6], numbers[7]};
    const auto factors = analysis::FactorsOf(*bearing.geometry);
    if (!factors) return std::nullopt;
    bearing.factors = *factors;
  }
  if (!analysis::AreFactors(bearing.factors)) return std::nullopt;
  return bearing;
}

}  // namespace

std::string TextOf(const BearingLibrary& library) {
  std::string text = std::string(kHeads) + "\n";
  for (const analysis::Bearing& bearing : library) text += LineOf(bearing) + "\n";
  return text;
}

ReadBearings BearingsFrom(std::string_view text) {
  ReadBearings read;
  const auto lines = Parts(text, '\n');
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string_view line = lines[i];
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line == kHeads) continue;
    if (auto bearing = BearingOf(Parts(line, '\t'))) {
      Put(read.bearings, *std::move(bearing));
    } else {
      constexpr std::size_t kShown = 40;
      read.messages.push_back(
          "Line " + std::to_string(i + 1) +
          " is not a bearing and was left out: " + std::string(line.substr(0, kShown)));
    }
  }
  return read;
}

void Put(BearingLibrary& library, analysis::Bearing bearing) {
  bearing.name = NameOf(bearing.name);
  const auto same = std::ranges::find(library, bearing.name, &analysis::Bearing::name);
  if (same == library.end()) {
    library.push_back(std::move(bearing));
  } else {
    *same = std::move(bearing);
  }
}

void Drop(BearingLibrary& library, const std::string& name) {
  std::erase_if(library, [&](const auto& bearing) { return bearing.name == name; });
}

}  // namespace kestrel::study
