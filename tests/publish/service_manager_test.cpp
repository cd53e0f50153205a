// A service manager of the test's own hears what a service tells.
// SPDX-License-Identifier: MIT
#include "publish/service_manager.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdlib>
#include <cstring>

#include "network_faults.h"
#include "support/temporary_folder.h"

namespace kestrel::publish {
namespace {

class ServiceManagers : public testing::Test {
 protected:
  void SetUp() override {
    const std::string name = (folder_.path() / "notify").string();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, name.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    setenv("NOTIFY_SOCKET", name.c_str(), 1);
  }
  void TearDown() override {
    unsetenv("NOTIFY_SOCKET");
    unsetenv("WATCHDOG_USEC");
    close(socket_);
  }
  // What was told next; empty where nothing was.
  std::string Told() const {
    std::array<char, 4096> text{};
    const ssize_t count = recv(socket_, text.data(), text.size(), MSG_DONTWAIT);
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

  TemporaryFolder folder_;
  int socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

TEST_F(ServiceManagers, AreToldOfBeginningAndEnd) {
  EXPECT_TRUE(TellReady("bench 1\nREADY=0"));
  EXPECT_EQ(Told(), "READY=1\nSTATUS=bench 1�READY=0");
  TellAlive();
  EXPECT_EQ(Told(), "WATCHDOG=1");
  TellStopping();
  EXPECT_EQ(Told(), "STOPPING=1");
}

TEST_F(ServiceManagers, SayHowOftenTheyWaitForASign) {
  EXPECT_EQ(WatchdogPeriod(), std::nullopt);
  setenv("WATCHDOG_USEC", "120000000", 1);
  EXPECT_EQ(WatchdogPeriod(), std::chrono::seconds(120));
}

TEST_F(ServiceManagers, AreNotNeeded) {
  unsetenv("NOTIFY_SOCKET");
  EXPECT_TRUE(TellReady("x"));
  TellAlive();
  EXPECT_EQ(Told(), "");
}

TEST_F(ServiceManagers, ThatCannotBeToldOnceAreToldTheNextTime) {
  for (const char* call : {"socket", "sendmsg"}) {
    NetworkFaults faults(call, 1, EMFILE);
    faults.Begin();
    EXPECT_FALSE(TellReady("x")) << call;
    EXPECT_TRUE(faults.IsMet()) << call;
    EXPECT_TRUE(TellReady("x")) << call;
    EXPECT_EQ(Told(), "READY=1\nSTATUS=x");
  }
}

TEST_F(ServiceManagers, WhoAreGoneHoldNobodyUp) {
  setenv("NOTIFY_SOCKET", (folder_.path() / "none").c_str(), 1);
  EXPECT_FALSE(TellReady("x"));
  TellAlive();
  TellStopping();
  EXPECT_EQ(Told(), "");
}

TEST_F(ServiceManagers, WaitForNoSignWhereTheirTimeIsNone) {
  for (const char* time : {"0", "soon", "-5"}) {
    setenv("WATCHDOG_USEC", time, 1);
    EXPECT_EQ(WatchdogPeriod(), std::nullopt) << time;
  }
}

}  // namespace
}  // namespace kestrel::publish
