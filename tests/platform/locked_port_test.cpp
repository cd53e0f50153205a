// Tests of ports that one program has at a time.
// SPDX-License-Identifier: MIT
#include "platform/locked_port.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "support/temporary_folder.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Every port answers with its address's low byte.
class AnyPort : public PortIo {
 public:
  void giveio() override { accesses.emplace_back("giveio"); }
  void vbOut(std::int16_t port, std::int16_t value) override {
    accesses.push_back(std::to_string(port) + "=" + std::to_string(value));
  }
  std::int16_t vbInp(std::int16_t port) override { return static_cast<std::int16_t>(port & 0x7F); }

  std::vector<std::string> accesses;
};

class LockedPortTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  DeviceLocks locks_{{folder_.path()}, [] { return "kestrel"; }};
  DeviceLocks others_{{folder_.path()}, [] { return "kestrel-cli, bench Hall 3"; }};
  AnyPort under_;
  LockedPort port_{under_, locks_};
};

TEST_F(LockedPortTest, APortInUseIsThisProgramsUntilItIsLetGo) {
  port_.giveio();
  EXPECT_TRUE(others_.Take("port-378")) << "nothing was accessed yet";
  others_.Release("port-378");
  port_.vbOut(0x378, 5);
  EXPECT_EQ(port_.vbInp(0x379), 0x79);
  EXPECT_TRUE(port_.IsHeld(0x378));
  EXPECT_FALSE(others_.Take("port-378"));
  EXPECT_THAT(under_.accesses, ElementsAre("giveio", "888=5"));
  port_.LetGo();
  EXPECT_TRUE(others_.Take("port-378"));
}

TEST_F(LockedPortTest, APortOfAnotherProgramIsNotTouchedAndItsHolderNamed) {
  ASSERT_TRUE(others_.Take("port-378"));
  EXPECT_FALSE(port_.IsHeld(0x378));
  port_.vbOut(0x378, 5);
  EXPECT_EQ(port_.vbInp(0x379), 0xFF);
  EXPECT_THAT(under_.accesses, IsEmpty());
  EXPECT_EQ(port_.Explanation(), "The port 378 is in use by kestrel-cli, bench Hall 3 (process " +
                                     std::to_string(getpid()) + "). Close that program.");
  others_.Release("port-378");
  EXPECT_TRUE(port_.IsHeld(0x378));
  EXPECT_EQ(port_.Explanation(), "");
}

TEST_F(LockedPortTest, AnotherPortFreesTheOneBefore) {
  port_.vbOut(0x378, 1);
  port_.vbOut(0x3BC, 2);
  EXPECT_TRUE(others_.Take("port-378"));
  EXPECT_FALSE(others_.Take("port-3BC"));
  EXPECT_THAT(under_.accesses, ElementsAre("888=1", "956=2"));
}

}  // namespace
}  // namespace kestrel
