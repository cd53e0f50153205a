// Faults of the program as exceptions of the package's own family.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "analysis/refusal.h"
#include "exchange/outcome.h"
#include "station/result.h"

namespace kestrel::python {

// The lock of the interpreter is held.

// Sets one of kestrel.errors, by its name.
void SetError(const char* name, const std::string& text);
// The others throw pybind11::error_already_set.

// One of kestrel.errors, by its name.
[[noreturn]] void Raise(const char* name, const std::string& text);
[[noreturn]] void Raise(const Failure& failure);
[[noreturn]] void Raise(const analysis::Refusal& refusal);
// An exception that is made of a text and a record, which may be None.
[[noreturn]] void RaiseWith(const char* name, const std::string& text,
                            const pybind11::object& record);

template <typename Value>
const Value& Got(const Result<Value>& result) {
  if (!result) Raise(result.Why());
  return *result;
}

template <typename Value>
const Value& Got(const analysis::Told<Value>& told) {
  if (!told) Raise(told.Why());
  return *told;
}

template <typename Value>
const Value& Got(const exchange::Exchanged<Value>& held) {
  if (!held) Raise("FileError", held.Why().Text());
  return *held;
}

}  // namespace kestrel::python
