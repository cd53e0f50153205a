// A setting of a choice as lines of text: how its values are told, and taken where they can be.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "study/choice_parts.h"
#include "study/study_choice.h"

namespace kestrel::study {

struct Setting {
  std::string_view key;
  std::function<std::vector<Json>(const StudyChoice&)> tell;  // a value for each line
  // Whether the value is one; the choice stays as it is where not.
  std::function<bool(StudyChoice&, const Json&)> take;
};

// No list is read further than this: a damaged text must not slow every plot.
inline constexpr std::size_t kMostOfAList = 1000;

[[nodiscard]] inline Json Tell(bool value) {
  return value;
}
[[nodiscard]] inline Json Tell(int value) {
  return value;
}
[[nodiscard]] inline Json Tell(std::size_t value) {
  return value;
}
[[nodiscard]] inline Json Tell(double value) {
  return value;
}
[[nodiscard]] inline Json Tell(const std::string& value) {
  return value;
}
[[nodiscard]] inline Json Tell(const std::array<bool, 3>& values) {
  return values;
}

// In each, `place` gives the setting's place in a choice that is handed in.
template <typename Place>
Setting OneValue(std::string_view key, Place place, auto read) {
  return {key,
          [place](const StudyChoice& choice) { return std::vector<Json>(1, Tell(place(choice))); },
          [place, read](StudyChoice& choice, const Json& json) {
            using Value = std::decay_t<decltype(place(choice))>;
            const auto value = read(json);
            if (value) place(choice) = static_cast<Value>(*value);
            return value.has_value();
          }};
}

template <typename Place>
Setting Flag(std::string_view key, Place place) {
  return OneValue(key, place, [](const Json& json) {
    return json.is_boolean() ? std::optional(json.get<bool>()) : std::nullopt;
  });
}

template <typename Place>
Setting Number(std::string_view key, Place place, double least, double most) {
  return OneValue(key, place, [=](const Json& json) { return NumberOf(json, least, most); });
}

template <typename Place>
Setting Whole(std::string_view key, Place place, int least, int most) {
  return OneValue(key, place, [=](const Json& json) { return WholeOf(json, least, most); });
}

// Words in the order of the enumeration.
using Words = std::vector<std::string_view>;

template <typename Value>
[[nodiscard]] std::optional<Value> ValueOf(const Words& words, const Json& json) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (json.is_string() && json == words[i]) return static_cast<Value>(i);
  }
  return std::nullopt;
}

// The line of a word; none of a value that has no word.
[[nodiscard]] inline std::vector<Json> LineOf(const Words& words, std::size_t word) {
  std::vector<Json> line;
  if (word < words.size()) line.emplace_back(words[word]);
  return line;
}

template <typename Place>
Setting Word(std::string_view key, Place place, Words words) {
  using Value = std::decay_t<decltype(place(std::declval<StudyChoice&>()))>;
  const auto tell = [=](const StudyChoice& choice) {
    return LineOf(words, static_cast<std::size_t>(place(choice)));
  };
  return {key, tell, [=](StudyChoice& choice, const Json& json) {
            const auto value = ValueOf<Value>(words, json);
            if (value) place(choice) = *value;
            return value.has_value();
          }};
}

// A line where there is one.
template <typename Place>
Setting Maybe(std::string_view key, Place place, bool (*isOne)(double)) {
  const auto tell = [place](const StudyChoice& choice) {
    std::vector<Json> line;
    if (place(choice)) line.emplace_back(*place(choice));
    return line;
  };
  return {key, tell, [place, isOne](StudyChoice& choice, const Json& json) {
            const bool isTaken = json.is_number() && isOne(json.get<double>());
            if (isTaken) place(choice) = json.get<double>();
            return isTaken;
          }};
}

// A line for each part; `read` makes a part of a value where it is one.
template <typename Place>
Setting Parts(std::string_view key, Place place, auto read) {
  const auto tell = [place](const StudyChoice& choice) {
    std::vector<Json> all;
    for (const auto& part : place(choice)) all.push_back(Tell(part));
    return all;
  };
  return {key, tell, [place, read](StudyChoice& choice, const Json& json) {
            auto& parts = place(choice);
            auto part = parts.size() < kMostOfAList ? read(json) : std::nullopt;
            if (part) parts.insert(parts.end(), *std::move(part));
            return part.has_value();
          }};
}

}  // namespace kestrel::study
