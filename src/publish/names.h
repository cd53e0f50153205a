// Names of benches and sensors as others can carry them: topics, labels, texts.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace kestrel::publish {

// Bytes of a cleaned name; of a longer one the beginning is kept, and 16 digits tell it apart.
inline constexpr std::size_t kLongestCleanName = 200;

// A bench and a sensor on it, as their user calls them.
struct Names {
  std::string bench{};
  std::string sensor{};
  bool operator==(const Names&) const = default;
};

// A name as one level of a topic. Letters of every language stay; "/ + # $ %", control characters,
// characters that may not be exchanged and bytes that are no UTF-8 become "%2F": two names never
// meet in one level. An empty one is "%".
[[nodiscard]] std::string TopicLevel(std::string_view name);

// "kestrel/<bench>/<sensor>/<leaf>".
[[nodiscard]] std::string TopicOf(const Names& names, std::string_view leaf);

// A text that every reader of UTF-8 takes on one line: what is no UTF-8, control characters and
// characters that may not be exchanged become U+FFFD. Of a text beyond `longest` bytes the
// beginning.
[[nodiscard]] std::string CleanText(std::string_view text, std::size_t longest = kLongestCleanName);

}  // namespace kestrel::publish
