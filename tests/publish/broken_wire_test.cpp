// Brokers whose answers break off, are garbled or stop at any byte, and that answer what comes to
// mind. SPDX-License-Identifier: MIT
#include <poll.h>

#include <array>
#include <vector>

#include "publish/mqtt_sender.h"
#include "rogue_broker.h"
#include "sender_bench.h"
#include "support/seeds.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;

enum class Break { End, Garble, Silence };

// Between a sender and a broker; one byte of the answers, counted from the beginning, breaks the
// wire.
class BrokenWire {
 public:
  BrokenWire(int broker, int byte, Break kind, int port = FreePort())
      : broker_(broker), byte_(byte), kind_(kind), port_(port) {}

  [[nodiscard]] int Port() const { return wire_.Port(); }
  [[nodiscard]] bool IsMet() const { return passed_ > byte_; }

 private:
  void Carry(int sender) {
    const int broker = ConnectedTo(broker_);
    std::array<char, 4096> bytes{};
    std::array<pollfd, 2> waits{{{sender, POLLIN, 0}, {broker, POLLIN, 0}}};
    for (bool isWhole = true; isWhole;) {
      poll(waits.data(), waits.size(), -1);
      const bool isAnswer = waits[1].revents != 0;
      const ssize_t count = recv(isAnswer ? broker : sender, bytes.data(), bytes.size(), 0);
      std::string part(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
      isWhole = count > 0 && (!isAnswer || Strike(part, sender)) &&
                Send(isAnswer ? sender : broker, part);
    }
    close(broker);
  }

  // What comes of a part of the answers; false where the connection ends.
  bool Strike(std::string& part, int sender) {
    const int at = byte_ - passed_;
    const bool isHere = at >= 0 && at < static_cast<int>(part.size());
    passed_ += static_cast<int>(part.size());
    if (!isHere) return true;
    const auto index = static_cast<std::size_t>(at);
    if (kind_ == Break::Garble) {
      part[index] = static_cast<char>(~part[index]);
      return true;
    }
    Send(sender, part.substr(0, index));
    std::array<char, 4096> bytes{};
    while (kind_ == Break::Silence && recv(sender, bytes.data(), bytes.size(), 0) > 0) {
    }
    return false;
  }

  const int broker_;
  const int byte_;
  const Break kind_;
  const int port_;
  std::atomic<int> passed_ = 0;
  RogueBroker wire_{[this](int sender) { Carry(sender); }, port_};  // begins last
};

void Hurry(SenderBench& bench) {
  bench.Choice().patience = {.firstRetry = 5ms,
                             .longestRetry = 40ms,
                             .answer = 250ms,
                             .betweenSpectra = 50ms,
                             .farewell = 1000ms,
                             .afterRefusal = 20ms};
}

class BrokenWires : public testing::TestWithParam<Break> {};

TEST_P(BrokenWires, AtAnyByteLoseAndDoubleNoAlarm) {
  const TemporaryBroker broker;
  const Subscriber subscriber(broker.Port(), kAlarms);
  ASSERT_TRUE(Hears(subscriber, broker.Port()));
  int told = 0;
  bool isMet = true;
  // Silence costs time.
  const int step = GetParam() == Break::Silence ? 5 : 1;
  for (int byte = 0; isMet && !HasFailure(); byte += byte < 40 ? step : 17) {
    SCOPED_TRACE(byte);
    const BrokenWire wire(broker.Port(), byte, GetParam());
    SenderBench bench(wire.Port());
    Hurry(bench);
    bench.Start();
    bench.Put(told++);
    EXPECT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; }));
    EXPECT_TRUE(Eventually([&] { return bench.Sender().State().isConnected; }));
    isMet = wire.IsMet();
    for (const std::string& line : bench.LogLines()) {
      EXPECT_TRUE(line.starts_with("Connected to the broker ") || line.starts_with("The broker "))
          << line;
      EXPECT_EQ(CleanText(line), line);
    }
    bench.Stop();
  }
  EXPECT_GT(told, 10);
  const auto count = static_cast<std::size_t>(told);
  EXPECT_TRUE(Eventually([&] { return subscriber.Payloads(kAlarms).size() >= count; }));
  std::this_thread::sleep_for(100ms);  // what comes twice comes now
  EXPECT_EQ(CountFaultsOf(NumbersOf(subscriber.Payloads(kAlarms)), told), "");
}

const char* NameOf(Break kind) {
  if (kind == Break::End) return "End";
  return kind == Break::Garble ? "AreGarbled" : "FallSilent";
}

INSTANTIATE_TEST_SUITE_P(That, BrokenWires,
                         testing::Values(Break::End, Break::Garble, Break::Silence),
                         [](const auto& test) { return NameOf(test.param); });

// A message of a broker's with a random kind, a size that is right or not, and random bytes.
std::string RandomMessage(Random& random) {
  std::string body(static_cast<std::size_t>(random.Below(40)), '\0');
  for (char& byte : body)
    byte = static_cast<char>(random.OneIn(3) ? random.Below(256) : random.Below(4));
  const int size = random.OneIn(4) ? random.Below(128) : static_cast<int>(body.size());
  return std::string{static_cast<char>(random.Below(256)), static_cast<char>(size)} + body;
}

TEST(RandomBrokers, HoldNoAlarmUpThatIsToldWhenTheyHaveComeToTheirSenses) {
  const TemporaryBroker broker;
  const Subscriber subscriber(broker.Port(), kAlarms);
  ASSERT_TRUE(Hears(subscriber, broker.Port()));
  int told = 0;
  WithSeeds(6, [&](Random& random) {
    const int port = FreePort();
    SenderBench bench(port);
    Hurry(bench);
    {
      const RogueBroker rogue(
          [&](int connection) {
            std::array<char, 4096> bytes{};
            recv(connection, bytes.data(), bytes.size(), 0);
            if (!random.OneIn(4)) Send(connection, std::string("\x20\x03\x00\x00\x00", 5));
            for (int i = random.Below(6); i >= 0; --i) {
              const std::string message = RandomMessage(random);
              const std::size_t part = random.OneIn(2) ? 1 : message.size();
              for (std::size_t at = 0; at < message.size(); at += part) {
                if (!Send(connection, message.substr(at, part))) return;
              }
            }
          },
          port);
      bench.Start();
      EXPECT_TRUE(Eventually([&] { return rogue.connections > 40; }));
    }
    // From now on a real one stands there.
    const BrokenWire wire(broker.Port(), 1 << 30, Break::End, port);
    bench.Put(told++);
    EXPECT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; }));
    for (const std::string& line : bench.LogLines()) {
      EXPECT_LT(line.size(), 300U);
      EXPECT_EQ(CleanText(line, line.size()), line);
    }
    bench.Stop();
  });
  const auto count = static_cast<std::size_t>(told);
  EXPECT_TRUE(Eventually([&] { return subscriber.Payloads(kAlarms).size() >= count; }));
  EXPECT_EQ(CountFaultsOf(NumbersOf(subscriber.Payloads(kAlarms)), told), "");
}

}  // namespace
}  // namespace kestrel::publish
