// Each call that the way to the broker makes of the system fails once, in turn.
// SPDX-License-Identifier: MIT
#include <cerrno>
#include <iostream>

#include "network_faults.h"
#include "publish/publisher.h"
#include "sender_bench.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;
using Kind = NetworkFaults::Kind;

struct Fault {
  const char* name;
  const char* call;
  int error = 0;
  const char* told = "";  // of the log; empty: no connection is lost
  Kind kind = Kind::Fails;
};

class MqttCallFaults : public testing::TestWithParam<Fault> {
 protected:
  void SetUp() override { ASSERT_TRUE(Hears(subscriber_, broker_.Port())); }

  // Whether the fault came while the connection was made and an alarm told over it.
  bool TellWith(int number) {
    SenderBench bench(broker_.Port());
    NetworkFaults faults(GetParam().call, number, GetParam().error, GetParam().kind);
    faults.Begin();
    bench.Start();
    bench.Put(told_++);
    EXPECT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; })) << number;
    faults.End();
    EXPECT_TRUE(Eventually([&] {
      const SenderState state = bench.Sender().State();
      return state.isConnected && state.trouble.empty();
    })) << number;
    CheckLog(bench.LogLines());
    return faults.IsMet();
  }

  void CheckLog(const std::vector<std::string>& lines) {
    const std::string where = "127.0.0.1:" + std::to_string(broker_.Port());
    for (const std::string& line : lines) {
      EXPECT_TRUE(line == "Connected to the broker 127.0.0.1." ||
                  (line.starts_with("The broker " + where + " cannot be reached (") &&
                   line.ends_with(").")))
          << line;
      log_ += line + "\n";
    }
    EXPECT_TRUE(*GetParam().told != '\0' || lines.size() == 1) << log_;
  }

  TemporaryBroker broker_;
  Subscriber subscriber_{broker_.Port(), kAlarms};
  std::string log_;
  int told_ = 0;
};

// More calls than one alarm needs; those of waiting come as often as something happens.
constexpr int kMost = 60;

TEST_P(MqttCallFaults, LoseAndDoubleNoAlarmAndAreTold) {
  int number = 1;
  while (number < kMost && TellWith(number) && !HasFailure()) ++number;
  EXPECT_GT(number, 1) << "the call is made";
  EXPECT_NE(log_.find(GetParam().told), std::string::npos) << log_;
  EXPECT_TRUE(Eventually(
      [&] { return subscriber_.Payloads(kAlarms).size() >= static_cast<std::size_t>(told_); }));
  std::this_thread::sleep_for(100ms);  // what comes twice comes now
  EXPECT_EQ(FaultsOf(NumbersOf(subscriber_.Payloads(kAlarms)), told_), "");
}

INSTANTIATE_TEST_SUITE_P(
    AtEach, MqttCallFaults,
    testing::Values(Fault{"NameThatIsNotFound", "getaddrinfo", 0, "(its name is not known)"},
                    Fault{"SocketThatIsNotGiven", "socket", EMFILE, "(Too many open files)"},
                    Fault{"RefusedConnection", "connect", ECONNREFUSED, "(Connection refused)"},
                    Fault{"ConnectionWithoutARoad", "connect", ENETUNREACH,
                          "(Network is unreachable)"},
                    Fault{"SettingThatFails", "fcntl", EINVAL, "(Invalid argument)"},
                    Fault{"WaitThatFails", "poll", ENOMEM},
                    Fault{"WireThatIsNotGiven", "socketpair", EMFILE, "(Too many open files)"},
                    Fault{"BrokenRead", "recv", ECONNRESET, "(Connection reset by peer)"},
                    Fault{"EndBeforeARead", "recv", 0, "cannot be reached (", Kind::EndsEarly},
                    Fault{"ReadOfOneByte", "recv", 0, "", Kind::TakesOneByte},
                    Fault{"BrokenWrite", "send", EPIPE, "(Broken pipe)"},
                    Fault{"WriteOfOneByte", "send", 0, "", Kind::TakesOneByte},
                    Fault{"LookOfOneByte", "read", 0, "", Kind::TakesOneByte},
                    Fault{"LookThatFails", "read", EIO, "cannot be reached ("}),
    [](const auto& test) { return test.param.name; });

TEST(PublisherCallFaults, WithoutRoomForAWakeUpTheBeginningSaysWhatToDo) {
  const TemporaryFolder folder;
  const PublisherChoice choice{
      .settings = {.broker = BrokerSettings{.host = "127.0.0.1",
                                            .port = static_cast<std::uint16_t>(FreePort())},
                   .command = CommandSettings{.words = {"true"}}},
      .names = kNames,
      .outbox = (folder.path() / "outbox.db").string()};
  int number = 1;
  for (bool isMet = true; isMet; ++number) {
    NetworkFaults faults("eventfd", number, EMFILE);
    faults.Begin();
    std::string told;
    try {
      const auto publisher = MakePublisher(choice);
      EXPECT_TRUE(publisher->Tell(Alarm{.id = std::to_string(number)}));
    } catch (const RuntimeError& error) {
      told = error.what();
    }
    isMet = faults.IsMet();
    EXPECT_EQ(told, isMet ? "the system has no room to publish (Too many open files): end other "
                            "programs, or raise the limit of open files"
                          : "");
  }
  EXPECT_EQ(number, 5) << "one for the broker, two for the command, and none fails";
}

}  // namespace
}  // namespace kestrel::publish
