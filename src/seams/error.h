// What went wrong, where, and the cure; the outcome of what may fail.
// SPDX-License-Identifier: MIT
#pragma once

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
  Outcome(Error error) : isSuccess_(false), error_(std::move(error)) {}

  explicit operator bool() const { return isSuccess_; }

  // Only of an outcome that is no success.
  [[nodiscard]] const Error& Why() const { return error_; }

 private:
  bool isSuccess_ = true;
  Error error_{};  // of no success
};

}  // namespace kestrel
