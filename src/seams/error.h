// What went wrong, where, and the cure; the outcome of what may fail.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace kestrel {

struct Error {
  std::string what;   // "Error Reading SPI"
  std::string where;  // "Ezusb-0", "parallel port 378"; empty where there is nothing to name
  std::string cure;   // what the user can do about it
  bool operator==(const Error&) const = default;
};

// Success, or the error that took its place. True when it is a success.
class Outcome {
 public:
  Outcome() = default;
  Outcome(Error error) : error_(std::move(error)) {}

  explicit operator bool() const { return !error_.has_value(); }

  // Only of an outcome that is no success.
  [[nodiscard]] const Error& Why() const { return *error_; }

 private:
  std::optional<Error> error_;
};

}  // namespace kestrel
