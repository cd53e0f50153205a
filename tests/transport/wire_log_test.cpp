// The log of the wire: lines, newest kept, cleared.
// SPDX-License-Identifier: MIT
#include "transport/wire_log.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

using std::chrono::milliseconds;

TEST(WireLog, TellsWhatWentOverTheWireLineByLine) {
  WireLog log;
  log.Add({milliseconds{5000}, 11, {25}, {}, false});
  log.Add({milliseconds{5010}, 13, {0x1C00, 0x1C00}, {0, 0x5AA5}, false});
  log.Add({milliseconds{6500}, 1, {}, {0x78, 0x19}, false});
  log.Add({milliseconds{6501}, 14, {0x1}, {}, true});
  EXPECT_EQ(log.Text(),
            "No.\tTime/s\tCommand\tSent\tReceived\r\n"
            "1\t0.000\t11\t19\t\r\n"
            "2\t0.010\t13\t1C00 1C00\t0000 5AA5\r\n"
            "3\t1.500\t1\t\t78 19\r\n"
            "4\t1.501\t14\t0001\tfailed\r\n");
}

TEST(WireLog, KeepsTheNewestAndCountsTheRest) {
  WireLog log;
  const int most = static_cast<int>(WireLog::kMostEntries);
  for (int i = 1; i <= most; ++i) log.Add({milliseconds{i}, 13, {1}, {2}, false});
  EXPECT_EQ(log.Dropped(), 0);
  for (int i = 1; i <= 7; ++i) log.Add({milliseconds{most + i}, 13, {3}, {4}, false});
  EXPECT_EQ(log.Entries().size(), WireLog::kMostEntries);
  EXPECT_EQ(log.Dropped(), 7);
  EXPECT_EQ(log.Entries().front().at, milliseconds{8});
  EXPECT_EQ(log.Entries().back().at, milliseconds{most + 7});
  EXPECT_NE(log.Text().find("\r\n8\t0.000\t13\t0001\t0002\r\n"), std::string::npos)
      << "numbers go on counting over what was dropped";
}

TEST(WireLog, ClearForgetsAll) {
  WireLog log;
  log.Add({milliseconds{1}, 13, {1}, {2}, false});
  log.Clear();
  EXPECT_EQ(log.Text(), "No.\tTime/s\tCommand\tSent\tReceived\r\n");
  EXPECT_EQ(log.Dropped(), 0);
}

}  // namespace
}  // namespace kestrel
