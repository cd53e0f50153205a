// The kind of fault that an action ends with.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "database/database.h"

namespace kestrel::database {

// A test fails where there is none, or where it says nothing.
inline Fault FaultOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const DatabaseError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.fault;
  }
  ADD_FAILURE() << "no fault";
  return Fault::Other;
}

}  // namespace kestrel::database
