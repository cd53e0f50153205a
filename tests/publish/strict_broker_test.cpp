// A broker that keeps to the letter which numbers of messages are in use.
// SPDX-License-Identifier: MIT
#include <map>
#include <mutex>

#include "rogue_broker.h"
#include "sender_bench.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {
namespace {

struct Packet {
  unsigned kind = 0;  // of MQTT: 1 connect, 3 publish, 6 release, 8 subscribe, ...
  unsigned flags = 0;
  std::string body{};
};

// Takes MQTT 3.1.1 with one client, keeps its session, and hands an alarm on when it is released.
class StrictBroker {
 public:
  [[nodiscard]] int Port() const { return broker_.Port(); }
  // The next alarm is stored, and the connection ends before its receipt is told.
  std::atomic<bool> cutsNextReceipt = false;
  // The next alarm is handed on, and the connection ends after all is told.
  std::atomic<bool> cutsAfterNext = false;

  [[nodiscard]] std::vector<std::string> HandedOn() {
    const std::lock_guard lock(mutex_);
    return handedOn_;
  }

 private:
  void Serve(int connection) {
    for (Packet packet = Next(connection); packet.kind != 0; packet = Next(connection)) {
      if (!Answer(connection, packet)) return;
    }
  }

  static Packet Next(int connection) {
    unsigned char head = 0;
    if (recv(connection, &head, 1, MSG_WAITALL) != 1) return {};
    std::size_t size = 0;
    unsigned char byte = 0x80;
    for (unsigned shift = 0; (byte & 0x80U) != 0; shift += 7) {
      if (recv(connection, &byte, 1, MSG_WAITALL) != 1) return {};
      size |= (byte & 0x7FU) << shift;
    }
    Packet packet{head / 16U, head % 16U, std::string(size, '\0')};
    const auto wanted = static_cast<ssize_t>(size);
    return wanted == 0 || recv(connection, packet.body.data(), size, MSG_WAITALL) == wanted
               ? packet
               : Packet{};
  }

  // False where the connection ends.
  bool Answer(int connection, const Packet& packet) {
    const std::string number = packet.body.substr(0, 2);
    switch (packet.kind) {
      case 1:
        return Welcome(connection, packet.body);
      case 3:
        return Take(connection, packet);
      case 6:
        return Release(connection, number);
      case 8:
        return Send(connection, "\x90\x03" + number + "\x01");
      case 12:
        return Send(connection, std::string("\xD0\x00", 2));
      default:
        return packet.kind != 14;
    }
  }

  bool Welcome(int connection, const std::string& body) {
    constexpr std::size_t kVersion = 6;
    constexpr std::size_t kFlags = 7;
    if (body.at(kVersion) != 4)
      return Send(connection, std::string("\x20\x02\x00\x01", 4)) && false;
    const bool isClean = (static_cast<unsigned char>(body.at(kFlags)) & 2U) != 0;
    if (isClean) stored_.clear();
    const bool isKept = hasSession_ && !isClean;
    hasSession_ = !isClean;
    return Send(connection, std::string(isKept ? "\x20\x02\x01\x00" : "\x20\x02\x00\x00", 4));
  }

  bool Take(int connection, const Packet& packet) {
    const std::size_t topic = static_cast<unsigned char>(packet.body.at(0)) * 256U +
                              static_cast<unsigned char>(packet.body.at(1));
    const unsigned quality = packet.flags / 2 % 4;
    if (quality == 0) return true;
    const std::string number = packet.body.substr(2 + topic, 2);
    if (quality == 1) return Send(connection, "\x40\x02" + number);
    stored_.try_emplace(number, packet.body.substr(4 + topic));  // else it came before
    if (cutsNextReceipt.exchange(false)) return false;
    return Send(connection, "\x50\x02" + number);
  }

  bool Release(int connection, const std::string& number) {
    if (const auto stored = stored_.extract(number)) {
      const std::lock_guard lock(mutex_);
      handedOn_.push_back(stored.mapped());
    }
    return Send(connection, "\x70\x02" + number) && !cutsAfterNext.exchange(false);
  }

  std::map<std::string, std::string> stored_;  // by number, not released yet
  bool hasSession_ = false;
  std::mutex mutex_;
  std::vector<std::string> handedOn_;
  RogueBroker broker_{[this](int connection) { Serve(connection); }};  // begins last
};

TEST(StrictBrokers, AnAlarmIsNotTakenForOneWhoseNumberWasLeftInUse) {
  StrictBroker broker;
  SenderBench bench(broker.Port());
  bench.Start();
  ASSERT_TRUE(Eventually([&] { return bench.Sender().State().isConnected; }));
  broker.cutsNextReceipt = true;
  bench.Put(0);  // its number stays in use
  ASSERT_TRUE(Eventually([&] { return !broker.cutsNextReceipt; }));
  broker.cutsAfterNext = true;
  bench.Sender().Tell(Levels{.of = kNames});  // so that it has another number the next time
  ASSERT_TRUE(Eventually([&] { return !broker.cutsAfterNext; }));
  bench.Put(1);
  ASSERT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; }));
  EXPECT_EQ(FaultsOf(NumbersOf(broker.HandedOn()), 2), "");
}

TEST(StrictBrokers, ASessionThatWasKeptIsHeardAndForgotten) {
  StrictBroker broker;
  SenderBench bench(broker.Port());
  for (int run = 0; run < 3; ++run) {
    bench.Start();
    bench.Put(run);
    EXPECT_TRUE(Eventually([&] { return bench.Letters().State().waiting == 0; })) << run;
    bench.Stop();
  }
  EXPECT_EQ(FaultsOf(NumbersOf(broker.HandedOn()), 3), "");
}

}  // namespace
}  // namespace kestrel::publish
