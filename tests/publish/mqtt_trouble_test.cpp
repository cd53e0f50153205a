// Brokers that refuse, that are not who they say, and that send what no broker sends.
// SPDX-License-Identifier: MIT
#include <sys/resource.h>

#include <atomic>

#include "publish/mqtt_sender.h"
#include "rogue_broker.h"
#include "sender_bench.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;

bool IsConnected(SenderBench& bench) {
  return Eventually([&] { return bench.Sender().State().isConnected; });
}

// What the log says first; empty where nothing is said.
std::string FirstLine(SenderBench& bench) {
  (void)Eventually([&] { return !bench.LogLines().empty(); });
  return bench.LogLines().empty() ? "" : bench.LogLines().front();
}

class GuardedBrokers : public testing::Test {
 protected:
  GuardedBrokers() {
    const auto file = folder_.Write("passwords", "bench:se cret\n");
    ChildProcess hash({"mosquitto_passwd", "-U", file.string()}, folder_.path() / "output");
    EXPECT_TRUE(Eventually([&] { return !hash.IsRunning(); }));
    rights_ = folder_.Write("rights", "user bench\ntopic readwrite kestrel/#\n").string();
    broker_ = std::make_unique<TemporaryBroker>("allow_anonymous false\npassword_file " +
                                                file.string() + "\nacl_file " + rights_ + "\n");
  }

  TemporaryFolder folder_;
  std::string rights_;
  std::unique_ptr<TemporaryBroker> broker_;
};

TEST_F(GuardedBrokers, TheRightOneOpensTheBroker) {
  SenderBench bench(broker_->Port());
  bench.Choice().broker.user = "bench";
  bench.Choice().password = "se cret";
  bench.Start();
  EXPECT_TRUE(IsConnected(bench));
}

TEST_F(GuardedBrokers, AWrongOneIsToldWithoutIt) {
  SenderBench bench(broker_->Port());
  bench.Choice().broker.user = "bench";
  bench.Choice().password = "wrong";
  bench.Start();
  const std::string line = FirstLine(bench);
  EXPECT_NE(line.find("refuses the connection (Not authorized): check user and password"),
            std::string::npos)
      << line;
  EXPECT_EQ(line.find("wrong"), std::string::npos);
  EXPECT_FALSE(bench.Sender().State().isConnected);
}

TEST_F(GuardedBrokers, AlarmsThatMayNotBeWrittenWaitAndThisIsTold) {
  TemporaryFolder other;
  const auto rights = other.Write("rights", "user bench\ntopic readwrite nothing/#\n");
  broker_->Stop();
  broker_->Configure("allow_anonymous false\npassword_file " +
                     (folder_.path() / "passwords").string() + "\nacl_file " + rights.string() +
                     "\n");
  broker_->Start();
  SenderBench bench(broker_->Port());
  bench.Choice().broker.user = "bench";
  bench.Choice().password = "se cret";
  bench.Start();
  bench.Put(0);
  ASSERT_TRUE(Eventually([&] { return !bench.Sender().State().trouble.empty(); }));
  EXPECT_NE(bench.Sender().State().trouble.find("refuses messages (Not authorized)"),
            std::string::npos)
      << bench.Sender().State().trouble;
  EXPECT_EQ(bench.Letters().State().waiting, 1);
}

class Certificates : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"ca", "stranger"}) {
      Openssl(
          "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 1 -subj "
          "/CN=test-" +
          std::string(name) + " -keyout " + File(std::string(name) + ".key") + " -out " +
          File(std::string(name) + ".crt"));
    }
    Sign("server", "DNS:localhost,IP:127.0.0.1");
    Sign("elsewhere", "DNS:elsewhere.example");
  }

  std::string File(const std::string& name) { return (folder_.path() / name).string(); }
  void Openssl(const std::string& words) {
    ChildProcess process({"sh", "-c", "exec openssl " + words}, File("output"));
    ASSERT_TRUE(Eventually([&] { return !process.IsRunning(); }));
  }
  void Sign(const std::string& name, const std::string& alternatives) {
    folder_.Write("names", "subjectAltName=" + alternatives + "\n");
    Openssl("req -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=" + name +
            " -keyout " + File(name + ".key") + " -out " + File(name + ".csr"));
    Openssl("x509 -req -in " + File(name + ".csr") + " -CA " + File("ca.crt") + " -CAkey " +
            File("ca.key") + " -CAcreateserial -days 1 -extfile " + File("names") + " -out " +
            File(name + ".crt"));
  }
  std::string Of(const std::string& name) {
    return "allow_anonymous true\ncafile " + File("ca.crt") + "\ncertfile " + File(name + ".crt") +
           "\nkeyfile " + File(name + ".key") + "\n";
  }
  void Trust(SenderBench& bench, const std::string& ca) {
    bench.Choice().broker.tls = true;
    bench.Choice().broker.ca = File(ca);
  }

  TemporaryFolder folder_;
};

TEST_F(Certificates, ATrustedBrokerGetsItsAlarms) {
  TemporaryBroker broker(Of("server"));
  for (const char* host : {"127.0.0.1", "localhost"}) {
    SenderBench bench(broker.Port());
    Trust(bench, "ca.crt");
    bench.Choice().broker.host = host;
    bench.Start();
    bench.Put(0);
    EXPECT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; })) << host;
  }
}

TEST_F(Certificates, ATrustedBrokerLeavesOutHugeMessages) {
  TemporaryBroker broker(Of("server"));
  const std::vector<std::string> tls{"--cafile", File("ca.crt")};
  const Subscriber subscriber(broker.Port(), kAlarms, tls);
  SenderBench bench(broker.Port());
  Trust(bench, "ca.crt");
  bench.Start();
  ASSERT_TRUE(Eventually([&] { return bench.Sender().State().isConnected; }));
  for (const std::string& topic : {kAlarms, kSpectra + "/get"}) {
    for (const std::size_t size : {70'000U, 3'000'000U}) {
      ASSERT_TRUE(PublishTo(broker.Port(), topic, std::string(size, '{'), tls));
    }
  }
  bench.Put(0);
  EXPECT_TRUE(Eventually([&] {
    const auto came = subscriber.Payloads(kAlarms);
    return !came.empty() && came.back() == LetterOf(0).payload;
  }));
  EXPECT_EQ(bench.LogLines().size(), 1U) << bench.LogLines().back();
  EXPECT_TRUE(bench.Sender().State().isConnected);
}

TEST_F(Certificates, AStrangersAuthorityIsRefusedWithTheCure) {
  TemporaryBroker broker(Of("server"));
  SenderBench bench(broker.Port());
  Trust(bench, "stranger.crt");
  bench.Start();
  const std::string line = FirstLine(bench);
  EXPECT_NE(line.find("certificate verify failed"), std::string::npos) << line;
  EXPECT_NE(line.find("ca has to name the authority"), std::string::npos) << line;
}

TEST_F(Certificates, AnotherNameIsRefusedAndTheRightOneIsTakenLater) {
  TemporaryBroker broker(Of("elsewhere"));
  SenderBench bench(broker.Port());
  Trust(bench, "ca.crt");
  bench.Start();
  bench.Put(0);
  EXPECT_NE(FirstLine(bench).find("cannot be reached"), std::string::npos) << FirstLine(bench);
  std::this_thread::sleep_for(500ms);  // some tries more
  EXPECT_FALSE(bench.Sender().State().isConnected);
  EXPECT_EQ(bench.Letters().State().waiting, 1);
  broker.Stop();
  broker.Configure(Of("server"));
  broker.Start();
  EXPECT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; }));
}

TEST_F(Certificates, WithoutAnAuthorityTheSystemsOwnAreTrusted) {
  TemporaryBroker broker(Of("server"));
  SenderBench bench(broker.Port());
  bench.Choice().broker.tls = true;
  bench.Start();
  EXPECT_NE(FirstLine(bench).find("certificate verify failed"), std::string::npos)
      << FirstLine(bench);
}

TEST_F(Certificates, AFileThatIsNotThereIsNamed) {
  SenderBench bench(FreePort());
  Trust(bench, "none.crt");
  bench.Start();
  EXPECT_NE(FirstLine(bench).find(File("none.crt") + " cannot be read"), std::string::npos);
}

// The protocol's version in what a client says first.
int VersionOfClient(int connection) {
  std::array<char, 512> bytes{};
  const ssize_t count = recv(connection, bytes.data(), bytes.size(), 0);
  const std::string text(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  const std::size_t name = text.find("MQTT");
  return name == std::string::npos || name + 4 >= text.size() ? 0 : text[name + 4];
}

TEST(RogueBrokers, GarbageEndsTheConnectionAndTheNextIsTried) {
  RogueBroker broker([](int connection) { Send(connection, "HTTP/1.1 400 Bad Request\r\n\r\n"); });
  SenderBench bench(broker.Port());
  bench.Start();
  bench.Put(0);
  EXPECT_TRUE(Eventually([&] { return broker.connections > 3; }));
  EXPECT_NE(FirstLine(bench).find("cannot be reached"), std::string::npos);
  EXPECT_EQ(bench.Letters().State().waiting, 1);
}

TEST(RogueBrokers, OneThatSaysNothingIsLeftAfterAWhile) {
  RogueBroker broker([](int connection) {
    std::array<char, 512> bytes{};
    while (recv(connection, bytes.data(), bytes.size(), 0) > 0) {
    }
  });
  SenderBench bench(broker.Port());
  bench.Choice().patience.answer = 200ms;
  bench.Start();
  EXPECT_TRUE(Eventually([&] { return broker.connections > 2; }));
  EXPECT_EQ(FirstLine(bench), "The broker does not answer.");
}

TEST(RogueBrokers, AMessageOf256MegabytesIsNotTaken) {
  std::atomic<std::int64_t> most = 0;  // of a connection, buffers on the way included
  RogueBroker broker([&](int connection) {
    VersionOfClient(connection);
    Send(connection, std::string("\x20\x03\x00\x00\x00", 5));  // welcome
    Send(connection, "\x30\xFF\xFF\xFF\x7F");                  // a message of the largest size
    const std::string part(65536, 'x');
    std::int64_t taken = 0;
    while (taken < 268'000'000 && Send(connection, part)) taken += 65536;
    most = std::max(most.load(), taken);
  });
  SenderBench bench(broker.Port());
  bench.Start();
  EXPECT_TRUE(Eventually([&] {
    const auto lines = bench.LogLines();
    return std::ranges::any_of(lines, [](const std::string& line) {
      return line.find("sends messages that are too large") != std::string::npos;
    });
  }));
  EXPECT_LT(most, 20'000'000);
}

// What the log says first of a broker that gives these answers, to version 5 and to the older one.
std::string LineOf(const std::string& toNew, const std::string& toOld = "") {
  RogueBroker broker([&](int connection) {
    const int version = VersionOfClient(connection);
    Send(connection, version == 5 ? toNew : toOld);
    std::this_thread::sleep_for(20ms);
  });
  SenderBench bench(broker.Port());
  bench.Start();
  bench.Put(0);
  (void)Eventually([&] { return broker.connections > 3; });
  const std::string where = "127.0.0.1:" + std::to_string(broker.Port());
  std::string line;
  for (const std::string& one : bench.LogLines()) {
    if (!one.starts_with("Connected")) line = one;
  }
  const std::size_t at = line.find(where);
  EXPECT_EQ(bench.Letters().State().waiting, 1);
  return at == std::string::npos ? line : line.replace(at, where.size(), "HOST");
}

TEST(RogueBrokers, TellWhyTheyRefuse) {
  const auto refusal = [](int reason) {
    return std::string("\x20\x03\x00", 3) + static_cast<char>(reason) + std::string("\x00", 1);
  };
  EXPECT_EQ(LineOf(refusal(0x86)),
            "The broker HOST refuses the connection (Bad User Name or Password): check user and "
            "password.");
  EXPECT_EQ(LineOf(refusal(0x88)), "The broker HOST refuses the connection (Server unavailable).");
  const std::string old("\x20\x02\x00\x01", 4);
  EXPECT_EQ(LineOf(old, std::string("\x20\x02\x00\x04", 4)),
            "The broker HOST refuses the connection (Connection Refused: bad user name or "
            "password.): check user and password.");
  EXPECT_EQ(LineOf(old, std::string("\x20\x02\x00\x05", 4)),
            "The broker HOST refuses the connection (Connection Refused: not authorised.): check "
            "user and password.");
  EXPECT_EQ(LineOf(old, old), "The broker HOST speaks neither MQTT 5 nor 3.1.1.");
  EXPECT_EQ(LineOf(refusal(0x84), old), "The broker HOST speaks neither MQTT 5 nor 3.1.1.");
}

TEST(RogueBrokers, SayWhyTheyGo) {
  EXPECT_EQ(LineOf(std::string("\x20\x03\x00\x00\x00\xE0\x01\x8B", 8)),
            "The broker HOST refuses the connection (Server shutting down).");
}

TEST(RogueBrokers, ThatSpeakOfWhatNobodyKnowsAreLeft) {
  EXPECT_EQ(LineOf(std::string("\x20\x06\x00\x00\x03\x30\x00\x00", 8)),
            "The broker HOST sends messages that cannot be read.");
}

TEST(RogueBrokers, MaySendWhatNobodyAskedFor) {
  RogueBroker broker([](int connection) {
    VersionOfClient(connection);
    Send(connection, std::string("\x20\x03\x00\x00\x00", 5));
    Send(connection, std::string("\x30\x05\x00\x01x\x00y", 7));
    std::array<char, 512> bytes{};
    while (recv(connection, bytes.data(), bytes.size(), 0) > 0) {
    }
  });
  SenderBench bench(broker.Port());
  bench.Start();
  EXPECT_TRUE(IsConnected(bench));
  EXPECT_EQ(bench.Sender().State().trouble, "");
}

TEST(Senders, OutliveALogThatFailsOnce) {
  TemporaryBroker broker;
  SenderBench bench(broker.Port());
  std::atomic<bool> hasFailed = false;
  const Log log = bench.Choice().log;
  bench.Choice().log = [&](const std::string& line) {
    if (!hasFailed.exchange(true)) throw std::runtime_error("the log is full");
    log(line);
  };
  bench.Start();
  bench.Put(0);
  EXPECT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; }));
  EXPECT_EQ(bench.LogLines(),
            (std::vector<std::string>{"the log is full", "Connected to the broker 127.0.0.1."}));
}

TEST(RogueBrokers, OneThatKnowsTheOlderProtocolOnlyIsSpokenToInIt) {
  RogueBroker broker([](int connection) {
    const int version = VersionOfClient(connection);
    Send(connection, std::string(version == 5 ? "\x20\x02\x00\x01" : "\x20\x02\x00\x00", 4));
    std::array<char, 512> bytes{};
    while (version == 4 && recv(connection, bytes.data(), bytes.size(), 0) > 0) {
    }
  });
  SenderBench bench(broker.Port());
  bench.Start();
  EXPECT_TRUE(IsConnected(bench));
  EXPECT_EQ(broker.connections, 2);
}

}  // namespace
}  // namespace kestrel::publish
