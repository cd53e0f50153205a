// The readers of the formats, and how they stop at what they cannot take.
// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "exchange/imported.h"
#include "exchange/outcome.h"

namespace kestrel::exchange {

// Thrown by the readers, and nowhere else; Imported() returns what it carries.
class ReadStop : public std::exception {
 public:
  explicit ReadStop(Fault fault) : fault_(std::move(fault)) {}
  [[nodiscard]] const Fault& Why() const { return fault_; }
  [[nodiscard]] const char* what() const noexcept override { return fault_.what.c_str(); }

 private:
  Fault fault_;
};

[[noreturn]] inline void StopAtLine(std::size_t line, std::string what) {
  throw ReadStop({.line = line, .what = std::move(what)});
}
[[noreturn]] inline void StopAtByte(std::size_t byte, std::string what) {
  throw ReadStop({.byte = byte, .what = std::move(what)});
}

[[nodiscard]] ImportedFile DataLogRead(std::string_view bytes);
[[nodiscard]] ImportedFile UffRead(std::string_view bytes);
[[nodiscard]] ImportedFile WavRead(std::string_view bytes);

}  // namespace kestrel::exchange
