// Options of the command line whose argument is one of a few words.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrel {

// Words and what they stand for, in the order in which help names them.
template <typename Value>
using WordCodes = std::vector<std::pair<std::string, Value>>;

// Of the sensor's settings.
inline const WordCodes<std::int16_t> kRangeWords{{"1", 0}, {"5", 1}, {"20", 2}, {"70", 3}};  // g
inline const WordCodes<std::int16_t> kWindowWords{
    {"rectangular", 0}, {"hanning", 1}, {"flattop", 2}};

// `codes` and `chosen` outlive the option.
template <typename Value>
CLI::Option* AddChoice(CLI::App& app, const char* name, std::optional<Value>& chosen,
                       const WordCodes<Value>& codes, const char* description) {
  std::string words;
  for (const auto& [word, value] : codes) words += (words.empty() ? "" : ", ") + word;
  return app
      .add_option_function<std::string>(
          name,
          [&chosen, &codes](const std::string& word) {
            chosen = std::ranges::find(codes, word, &std::pair<std::string, Value>::first)->second;
          },
          std::string(description) + ": " + words)
      ->check(CLI::IsMember(codes))
      ->type_name("WORD");
}

// "--fast" of every command that reads records.
inline void AddFast(CLI::App& word, bool& fast) {
  word.add_flag("--fast", fast, "Read records out in blocks, which is much faster, and check them");
}

}  // namespace kestrel
