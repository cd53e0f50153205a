// A value of an exchange, or the fault that took its place and where in which file it is.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace kestrel::exchange {

// Why nothing was written, or nothing was imported.
struct Fault {
  std::string file{};                 // as the reader was told it; empty for a writer
  std::optional<std::size_t> line{};  // from 1
  std::optional<std::size_t> byte{};  // from 0
  std::string what{};  // what is wrong, with the value, and the cure where one is known

  // One line: "pump.uff, line 12: the number of values is -3".
  [[nodiscard]] std::string Text() const {
    std::string where = file;
    const auto add = [&where](const std::string& part) {
      where += (where.empty() ? "" : ", ") + part;
    };
    if (line) add("line " + std::to_string(*line));
    if (byte) add("byte " + std::to_string(*byte));
    return where.empty() ? what : where + ": " + what;
  }
};

// A value, or the fault that took its place. True when it is a value.
template <typename Value>
class [[nodiscard]] Exchanged {
 public:
  Exchanged(Value value) : held_(std::move(value)) {}  // NOLINT(google-explicit-constructor)
  Exchanged(Fault fault) : held_(std::move(fault)) {}  // NOLINT(google-explicit-constructor)

  [[nodiscard]] explicit operator bool() const { return held_.index() == 0; }
  // Only of a value.
  [[nodiscard]] const Value& operator*() const { return *std::get_if<0>(&held_); }
  [[nodiscard]] const Value* operator->() const { return std::get_if<0>(&held_); }
  // Only of a fault.
  [[nodiscard]] const Fault& Why() const { return *std::get_if<1>(&held_); }

 private:
  std::variant<Value, Fault> held_;
};

}  // namespace kestrel::exchange
