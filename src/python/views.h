// Arrays over memory that is here already, and plain values of times.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/numpy.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "python/interpreter_lock.h"
#include "record/axis.h"

namespace kestrel::python {

// numpy, whole. Called before the first array is made: what makes arrays asks for numpy behind a
// door that a second thread would wait at with the lock of the interpreter, which the import needs.
inline void NeedNumpy() {
  DoneOrNever([] { pybind11::module_::import("numpy"); });
}

// A read-only array over the owner's memory, which it keeps alive.
[[nodiscard]] inline pybind11::array_t<double> View(std::span<const double> values,
                                                    const pybind11::handle& owner) {
  NeedNumpy();
  pybind11::array_t<double> view({values.size()}, {sizeof(double)}, values.data(), owner);
  view.attr("setflags")(pybind11::arg("write") = false);
  return view;
}

// An array that takes the values over, without a copy.
template <typename Value>
[[nodiscard]] pybind11::array_t<Value> Taken(std::vector<Value> values) {
  NeedNumpy();
  auto held = std::make_unique<std::vector<Value>>(std::move(values));
  auto* all = held.get();
  const pybind11::capsule owner(held.release(), [](void* memory) {
    const std::unique_ptr<std::vector<Value>> last(static_cast<std::vector<Value>*>(memory));
  });
  pybind11::array_t<Value> array({all->size()}, {sizeof(Value)}, all->data(), owner);
  array.attr("setflags")(pybind11::arg("write") = false);
  return array;
}

// 0, 1, 2 for X, Y, Z; the package passes no other.
[[nodiscard]] inline Axis AxisOf(int index) {
  return kAxes.at(static_cast<std::size_t>(index));
}

[[nodiscard]] inline std::int64_t NanosecondsOf(std::chrono::system_clock::time_point time) {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count();
}
[[nodiscard]] inline std::chrono::system_clock::time_point MomentOf(std::int64_t nanoseconds) {
  return std::chrono::system_clock::time_point(
      std::chrono::duration_cast<std::chrono::system_clock::duration>(
          std::chrono::nanoseconds(nanoseconds)));
}

}  // namespace kestrel::python
