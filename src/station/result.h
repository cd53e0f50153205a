// The outcome of a station's step: a value, or why there is none.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace kestrel {

enum class FailureKind {
  NoSensor,    // none could be reached, or it was lost on the way
  Refused,     // a value, a file or a step that cannot be; the sensor is still there
  Interrupted  // its owner asked for an end
};

struct Failure {
  FailureKind kind = FailureKind::Refused;
  std::string text;  // lines for people: what happened, and the cure where one is known
};

// A value, or the failure that took its place. True when it is a value.
template <typename Value>
class [[nodiscard]] Result {
 public:
  Result(Value value) : content_(std::move(value)) {}        // NOLINT(google-explicit-constructor)
  Result(Failure failure) : content_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return std::holds_alternative<Value>(content_); }
  // Only of a value.
  const Value& operator*() const { return std::get<Value>(content_); }
  const Value* operator->() const { return &std::get<Value>(content_); }
  // Only of a failure.
  [[nodiscard]] const Failure& Why() const { return std::get<Failure>(content_); }

 private:
  std::variant<Value, Failure> content_;
};

// Of a step that gives nothing but its success.
struct Nothing {};
using Done = Result<Nothing>;

}  // namespace kestrel
