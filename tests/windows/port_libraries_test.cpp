// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "platform/windows/port_libraries.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "recorder.h"

namespace kestrel {
namespace {

std::vector<PortCall> CallsOf(const char* library) {
  const auto calls = reinterpret_cast<CallsFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(library), "Calls")));
  const PortCall* first = nullptr;
  const int count = calls(&first);
  return {first, first + count};
}

TEST(PortLibrariesTest, EveryAccessGoesToTheLibraries) {
  PortLibraries port;
  EXPECT_EQ(GetModuleHandleA("win95io.dll"), nullptr) << "loaded before it was needed";
  port.giveio();
  port.vbOut(888, 5);
  EXPECT_EQ(port.vbInp(889), 889 & 0xFF);
  port.vbOut(888, 7);
  EXPECT_EQ(CallsOf("giveio.dll").size(), 1U);
  const std::vector<PortCall> calls = CallsOf("win95io.dll");
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0].port, 888);
  EXPECT_EQ(calls[0].value, 5);
  EXPECT_EQ(calls[1].port, 889);
  EXPECT_EQ(calls[1].value, -1);
  EXPECT_EQ(calls[2].value, 7);
}

TEST(PortLibrariesTest, TheLibrariesAreGivenBack) {
  {
    PortLibraries port;
    port.giveio();
    EXPECT_NE(GetModuleHandleA("win95io.dll"), nullptr);
  }
  EXPECT_EQ(GetModuleHandleA("win95io.dll"), nullptr);
  EXPECT_EQ(GetModuleHandleA("giveio.dll"), nullptr);
}

}  // namespace
}  // namespace kestrel
