// What cannot be told from the data, why, and the setting with which it could be.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kestrel::analysis {

// What one sample-rate option could tell.
struct OptionOffer {
  int option = 0;         // 0..3
  double binWidthHz = 0;  // of its spectra
  double lengthS = 0;     // of 512 of its samples
  double fromHz = 0;      // lowest frequency at which the quantity can be told
  double toHz = 0;        // highest
  bool current = false;   // the record at hand was taken so
  bool wouldDo = false;
  bool operator==(const OptionOffer&) const = default;
};

struct Refusal {
  std::string title{};                 // what cannot be told from what
  std::string reason{};                // one line, with the two numbers that decide
  double has = 0;                      // the first of them, in `unit`
  double needs = 0;                    // the second
  std::string unit{};                  // "Hz", "s"; empty where no numbers decide
  std::string cure{};                  // what to do: "Capture at option 3"
  std::optional<int> cureOption{};     // the option that would do, the fastest of several
  std::vector<OptionOffer> options{};  // all four, or none where the option does not decide
  bool operator==(const Refusal&) const = default;
};

// Title, reason and cure as one line, for whoever has no room for a table.
[[nodiscard]] std::string AsLine(const Refusal& refusal);

// A value, or why there is none. Keep it in a variable before going through the value in a
// range-for: a temporary is gone by then.
template <typename Value>
class Told {
 public:
  Told(Value value) : held_(std::move(value)) {}        // NOLINT: a value is told
  Told(Refusal refusal) : held_(std::move(refusal)) {}  // NOLINT: a refusal is none
  [[nodiscard]] explicit operator bool() const { return held_.index() == 0; }
  // Only where the value is told.
  [[nodiscard]] const Value& operator*() const { return *std::get_if<0>(&held_); }
  [[nodiscard]] const Value* operator->() const { return std::get_if<0>(&held_); }
  // Only where it is not.
  [[nodiscard]] const Refusal& Why() const { return *std::get_if<1>(&held_); }

 private:
  std::variant<Value, Refusal> held_;
};

// Marks among `options` those whose band holds fromHz to toHz, and the fastest of them as the cure.
void MarkWhatWouldDo(Refusal& refusal, double fromHz, double toHz);

}  // namespace kestrel::analysis
