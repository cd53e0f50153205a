// Messages reach those who listen to a real broker, whatever becomes of it.
// SPDX-License-Identifier: MIT
#include "publish/mqtt_sender.h"

#include <nlohmann/json.hpp>
#include <random>

#include "sender_bench.h"
#include "support/seeds.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;

std::string StateIn(const std::string& payload) {
  return nlohmann::json::parse(payload)["state"];
}

class MqttSenders : public testing::Test {
 protected:
  // Listens, and returns when the broker knows it.
  std::unique_ptr<Subscriber> Listen(const std::string& topic = "kestrel/#") {
    auto subscriber = std::make_unique<Subscriber>(broker_.Port(), topic);
    EXPECT_TRUE(Hears(*subscriber, broker_.Port()));
    return subscriber;
  }
  bool IsConnected() {
    return Eventually([&] { return bench_.Sender().State().isConnected; });
  }
  bool AllArrived() {
    return Eventually([&] { return bench_.Letters().State().waiting == 0; }, 60s);
  }

  TemporaryBroker broker_;
  SenderBench bench_{broker_.Port()};
};

TEST_F(MqttSenders, TheBeginningIsToldAndStays) {
  bench_.Start();
  ASSERT_TRUE(IsConnected());
  const auto subscriber = Listen();
  ASSERT_TRUE(Eventually([&] { return !subscriber->Payloads(kStatuses).empty(); }));
  EXPECT_EQ(StateIn(subscriber->Payloads(kStatuses).front()), "starting");
  EXPECT_EQ(bench_.LogLines(), (std::vector<std::string>{"Connected to the broker 127.0.0.1."}));
}

TEST_F(MqttSenders, LevelsAndStatusArriveAsTheyWereTold) {
  const auto subscriber = Listen();
  bench_.Start();
  Levels levels{.of = kNames};
  levels.axes[2].rmsG = 0.125;
  const Status status{.of = kNames, .state = State::Up, .records = 7};
  bench_.Sender().Tell(levels);
  bench_.Sender().Tell(status);
  EXPECT_TRUE(Eventually([&] {
    return subscriber->Payloads(kLevels) == std::vector{JsonOf(levels)} &&
           !subscriber->Payloads(kStatuses).empty() &&
           subscriber->Payloads(kStatuses).back() == JsonOf(status);
  }));
}

TEST_F(MqttSenders, OfWhatIsToldWhileTheBrokerIsAwayTheLatestIsSent) {
  const auto subscriber = Listen();
  bench_.Start();
  ASSERT_TRUE(IsConnected());
  broker_.Stop();
  Levels levels{.of = kNames};
  for (int i = 0; i < 1000; ++i) {
    levels.axes[0].rmsG = i;
    bench_.Sender().Tell(levels);
  }
  broker_.Start();
  ASSERT_TRUE(Eventually([&] { return !subscriber->Payloads(kLevels).empty(); }));
  EXPECT_EQ(subscriber->Payloads(kLevels).back(), JsonOf(levels));
  EXPECT_LT(subscriber->Payloads(kLevels).size(), 3U);
}

TEST_F(MqttSenders, TheEndIsToldByThemselves) {
  const auto subscriber = Listen();
  bench_.Start();
  ASSERT_TRUE(IsConnected());
  bench_.Sender().Tell(Status{.of = kNames, .state = State::Stopped});
  bench_.Stop();
  ASSERT_TRUE(Eventually([&] {
    const auto statuses = subscriber->Payloads(kStatuses);
    return !statuses.empty() && StateIn(statuses.back()) == "stopped";
  }));
  std::this_thread::sleep_for(100ms);  // a will would come now
  EXPECT_EQ(StateIn(subscriber->Payloads(kStatuses).back()), "stopped");
}

TEST_F(MqttSenders, AlarmsOfBeforeTheFirstConnectionArriveInTurn) {
  broker_.Stop();
  bench_.Start();
  for (int i = 0; i < 50; ++i) bench_.Put(i);
  ASSERT_TRUE(Eventually([&] { return !bench_.LogLines().empty(); }));
  EXPECT_EQ(bench_.LogLines().front(), "The broker 127.0.0.1:" + std::to_string(broker_.Port()) +
                                           " cannot be reached (Connection refused).");
  bench_.Stop();
  broker_.Start();
  // A subscriber who has to connect again may get what waited for it in another turn.
  const auto subscriber = Listen();
  bench_.Start();
  ASSERT_TRUE(AllArrived());
  ASSERT_TRUE(Eventually([&] { return subscriber->Payloads(kAlarms).size() >= 50; }));
  EXPECT_EQ(FaultsOf(NumbersOf(subscriber->Payloads(kAlarms)), 50), "");
}

TEST_F(MqttSenders, ARefusedBrokerIsLoggedOnceAndNotAtEachTry) {
  broker_.Stop();
  bench_.Start();
  std::this_thread::sleep_for(1500ms);  // some ten tries
  EXPECT_EQ(bench_.LogLines().size(), 1U);
}

// Alarms are told all the while; each reaches the subscriber once. Their turn is the broker's,
// which may mix what waited when it reads its own file again.
class Interrupted : public MqttSenders {
 protected:
  void SendWhile(const std::function<void(Random&)>& interrupt, std::uint32_t seed) {
    const auto subscriber = Listen();
    bench_.Start();
    constexpr int kAlarmsSent = 300;
    std::thread telling([&] {
      for (int i = 0; i < kAlarmsSent; ++i) {
        bench_.Put(i);
        std::this_thread::sleep_for(10ms);
      }
    });
    Random random(seed);
    for (int i = 0; i < 6; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(random.Below(500)));
      interrupt(random);
    }
    telling.join();
    ASSERT_TRUE(AllArrived());
    EXPECT_TRUE(
        Eventually([&] { return subscriber->Payloads(kAlarms).size() >= kAlarmsSent; }, 60s));
    std::this_thread::sleep_for(200ms);  // what comes twice comes now
    EXPECT_EQ(CountFaultsOf(NumbersOf(subscriber->Payloads(kAlarms)), kAlarmsSent), "");
  }
};

TEST_F(Interrupted, AStoppedAndRestartedBrokerLosesAndDoublesNothing) {
  SendWhile(
      [&](Random& random) {
        broker_.Stop();
        std::this_thread::sleep_for(std::chrono::milliseconds(random.Below(300)));
        broker_.Start();
      },
      1);
}

TEST_F(Interrupted, ABrokerThatAnswersTooLateLosesAndDoublesNothing) {
  SendWhile(
      [&](Random& random) {
        broker_.Freeze();
        std::this_thread::sleep_for(std::chrono::milliseconds(random.Below(1800)));
        broker_.GoOn();
      },
      2);
}

TEST_F(Interrupted, ARestartedProgramLosesAndDoublesNothing) {
  const auto subscriber = Listen();
  Random random(3);
  int told = 0;
  for (int run = 0; run < 20; ++run) {
    bench_.Start();
    const int until = told + random.Below(10);
    for (; told < until; ++told) bench_.Put(told);
    std::this_thread::sleep_for(std::chrono::milliseconds(random.Below(30)));
    bench_.Stop();
  }
  bench_.Start();
  ASSERT_TRUE(AllArrived());
  const auto count = static_cast<std::size_t>(told);
  ASSERT_TRUE(Eventually([&] { return subscriber->Payloads(kAlarms).size() >= count; }));
  EXPECT_EQ(FaultsOf(NumbersOf(subscriber->Payloads(kAlarms)), told), "");
}

TEST_F(MqttSenders, ASpectrumIsSentToWhoAsks) {
  const auto subscriber = Listen();
  bench_.Start();
  ASSERT_TRUE(IsConnected());
  Spectrum spectrum{.of = kNames, .binHz = 195.7};
  spectrum.g[0] = {0.25, 0.5};
  bench_.Sender().Tell(spectrum);
  std::this_thread::sleep_for(100ms);
  EXPECT_TRUE(subscriber->Payloads(kSpectra).empty());
  ASSERT_TRUE(PublishTo(broker_.Port(), kSpectra + "/get", ""));
  EXPECT_TRUE(
      Eventually([&] { return subscriber->Payloads(kSpectra) == std::vector{JsonOf(spectrum)}; }));
}

TEST_F(MqttSenders, AnOldRequestThatTheBrokerKeptIsNotAnswered) {
  const auto subscriber = Listen();
  ASSERT_TRUE(PublishTo(broker_.Port(), kSpectra + "/get", "1", {"-r"}));
  bench_.Start();
  bench_.Sender().Tell(Spectrum{.of = kNames, .binHz = 1});
  bench_.Put(0);
  ASSERT_TRUE(AllArrived());
  std::this_thread::sleep_for(200ms);
  EXPECT_TRUE(subscriber->Payloads(kSpectra).empty());
  ASSERT_TRUE(PublishTo(broker_.Port(), kSpectra + "/get", "1"));
  EXPECT_TRUE(Eventually([&] { return subscriber->Payloads(kSpectra).size() == 1; }));
}

TEST_F(MqttSenders, ARequestBeforeThereIsASpectrumIsNotAnswered) {
  const auto subscriber = Listen();
  bench_.Start();
  ASSERT_TRUE(IsConnected());
  ASSERT_TRUE(PublishTo(broker_.Port(), kSpectra + "/get", "1"));
  bench_.Put(0);
  ASSERT_TRUE(AllArrived());
  std::this_thread::sleep_for(200ms);
  EXPECT_TRUE(subscriber->Payloads(kSpectra).empty());
}

TEST_F(MqttSenders, AFloodOfRequestsIsAnsweredNowAndThen) {
  const auto subscriber = Listen();
  bench_.Choice().patience.betweenSpectra = 300ms;
  bench_.Start();
  ASSERT_TRUE(IsConnected());
  bench_.Sender().Tell(Spectrum{.of = kNames});
  const auto begin = std::chrono::steady_clock::now();
  std::string lines;
  for (int i = 0; i < 5000; ++i) lines += "x\n";
  const TemporaryFolder folder;
  const auto file = folder.Write("lines", lines);
  ChildProcess sending({"sh", "-c",
                        "exec mosquitto_pub -h 127.0.0.1 -p " + std::to_string(broker_.Port()) +
                            " -t '" + kSpectra + "/get' -l < " + file.string()},
                       folder.path() / "output");
  ASSERT_TRUE(Eventually([&] { return !sending.IsRunning(); }));
  ASSERT_TRUE(Eventually([&] { return !subscriber->Payloads(kSpectra).empty(); }));
  std::this_thread::sleep_for(700ms);
  const auto passed = std::chrono::steady_clock::now() - begin;
  EXPECT_LE(subscriber->Payloads(kSpectra).size(), static_cast<std::size_t>(passed / 300ms + 1));
}

TEST_F(MqttSenders, GarbageAndHugeMessagesAreLeftOut) {
  const auto subscriber = Listen(kAlarms);
  bench_.Start();
  ASSERT_TRUE(IsConnected());
  for (const std::string& topic : {kAlarms, kSpectra + "/get"}) {
    ASSERT_TRUE(PublishTo(broker_.Port(), topic, std::string(3'000'000, '{')));
    ASSERT_TRUE(PublishTo(broker_.Port(), topic, std::string("\0\xFF{\"id\":", 8)));
  }
  bench_.Put(0);
  ASSERT_TRUE(AllArrived());
  EXPECT_TRUE(
      Eventually([&] { return subscriber->Payloads(kAlarms).back() == LetterOf(0).payload; }));
  EXPECT_EQ(bench_.LogLines().size(), 1U) << bench_.LogLines().back();
  EXPECT_TRUE(bench_.Sender().State().isConnected);
}

// Ended after the broker has an alarm, and before this is known here.
TEST_F(MqttSenders, AnAlarmThatArrivedUnknownIsNotSentAgain) {
  const auto subscriber = Listen(kAlarms);
  bench_.Start();
  bench_.Put(0);
  ASSERT_TRUE(AllArrived());  // so it hears what is sent
  bench_.Stop();
  ASSERT_TRUE(PublishTo(broker_.Port(), kAlarms, LetterOf(1).payload));
  bench_.Start();
  bench_.Put(1);
  bench_.Put(2);
  ASSERT_TRUE(AllArrived());
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(FaultsOf(NumbersOf(subscriber->Payloads(kAlarms)), 3), "");
}

TEST_F(MqttSenders, AStrangersMessageDoesNotPassForAnAlarmThatArrived) {
  const auto subscriber = Listen(kAlarms);
  bench_.Start();
  bench_.Put(0);
  ASSERT_TRUE(AllArrived());  // so it hears what is sent
  bench_.Stop();
  const std::string strange = JsonOf(Alarm{.id = "alarm 1", .of = kNames, .level = 99});
  ASSERT_TRUE(PublishTo(broker_.Port(), kAlarms, strange));
  bench_.Start();
  bench_.Put(1);
  ASSERT_TRUE(AllArrived());
  EXPECT_TRUE(Eventually([&] {
    return subscriber->Payloads(kAlarms) ==
           std::vector{LetterOf(0).payload, strange, LetterOf(1).payload};
  }));
}

}  // namespace
}  // namespace kestrel::publish
