// The program-wide names as a test gives them.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Given(UsbPresent) = false: a state of the program that a test begins with. The program itself can
// only read its names; no name refers to a constant.
template <typename Value>
Value& Given(const Value& name) {
  return const_cast<Value&>(name);
}

}  // namespace kestrel
