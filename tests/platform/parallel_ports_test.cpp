// The system's list of its parallel ports.
// SPDX-License-Identifier: MIT
// The system's list of its parallel ports.

#include "platform/linux/parallel_ports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

class ParallelPortList : public testing::Test {
 protected:
  void Add(const std::string& name, const std::string& base) {
    fs::create_directory(settings.path() / name);
    settings.Write(name + "/base-addr", base);
  }
  std::vector<SystemParallelPort> List() {
    return ParallelPorts({.devices = "/dev", .settings = settings.path()});
  }
  std::uint32_t BaseFrom(const std::string& text) {
    Add("parport0", text);
    return List().at(0).base;
  }

  TemporaryFolder settings;
};

TEST_F(ParallelPortList, PortsComeByNumber) {
  Add("parport10", "632\t0\n");
  Add("parport2", "888\t1912\n");
  Add("default", "");
  const auto ports = List();
  ASSERT_EQ(ports.size(), 2U);
  EXPECT_EQ(ports[0].number, 2);
  EXPECT_EQ(ports[0].base, 888U);
  EXPECT_EQ(ports[0].device, "/dev/parport2");
  EXPECT_EQ(ports[1].number, 10);
}

TEST_F(ParallelPortList, OnlyANumberMakesAPort) {
  for (const char* name : {"parport", "parportx", "parport-1", "parport1x", "parport99999"}) {
    Add(name, "888\t1912\n");
  }
  EXPECT_THAT(List(), IsEmpty());
}

TEST_F(ParallelPortList, ABaseThatIsNoNumberIsNone) {
  EXPECT_EQ(BaseFrom("956\t0\n"), 956U);
  for (const char* text : {"", "\n", "0\t0\n", "-1", "4294967296", "888x", "none 888"}) {
    EXPECT_EQ(BaseFrom(text), 0U) << text;
  }
}

}  // namespace
}  // namespace kestrel
