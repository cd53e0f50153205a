// Everything together: broker, command and metrics of one set of settings.
// SPDX-License-Identifier: MIT
#include "publish/publisher.h"

#include <iostream>
#include <set>

#include "http_answer.h"
#include "numeric/runtime_error.h"
#include "sender_bench.h"
#include "support/killed_child.h"
#include "support/seeds.h"
#include "support/temporary_broker.h"

namespace kestrel::publish {
namespace {

using namespace std::chrono_literals;

class Publishers : public testing::Test {
 protected:
  PublisherChoice Choice() {
    return {
        .settings = {.broker = BrokerSettings{.host = "127.0.0.1",
                                              .port = static_cast<std::uint16_t>(broker_.Port())}},
        .names = kNames,
        .outbox = (folder_.path() / "outbox.db").string()};
  }
  static Alarm AlarmOf(int number) {
    return {.id = "alarm " + std::to_string(number), .of = kNames, .level = number};
  }

  TemporaryFolder folder_;
  TemporaryBroker broker_;
};

TEST_F(Publishers, AnAlarmReachesBrokerCommandAndMetrics) {
  const Subscriber subscriber(broker_.Port());
  ASSERT_TRUE(Hears(subscriber, broker_.Port()));
  PublisherChoice choice = Choice();
  choice.settings.metrics = MetricsSettings{};
  choice.settings.command =
      CommandSettings{.words = {"sh", "-c", "cat >> " + (folder_.path() / "told").string()}};
  const auto publisher = MakePublisher(choice);
  EXPECT_TRUE(publisher->Tell(AlarmOf(0)));
  EXPECT_TRUE(publisher->Tell(AlarmOf(0)));
  EXPECT_TRUE(Eventually([&] { return publisher->State().waitingAlarms == 0; }));
  EXPECT_TRUE(Eventually([&] {
    return subscriber.Payloads(kAlarms) == std::vector{JsonOf(AlarmOf(0))} &&
           folder_.Content("told") == JsonOf(AlarmOf(0)) + "\n";
  }));
  EXPECT_TRUE(Eventually([&] { return publisher->State().isConnected; }));
  EXPECT_NE(publisher->State().metricsUrl, "");
  EXPECT_EQ(publisher->State().trouble, "");
}

TEST_F(Publishers, LevelsStatusAndSpectraReachEachThatWantsThem) {
  const Subscriber subscriber(broker_.Port());
  ASSERT_TRUE(Hears(subscriber, broker_.Port()));
  PublisherChoice choice = Choice();
  choice.settings.metrics = MetricsSettings{};
  const auto publisher = MakePublisher(choice);
  Levels levels{.of = kNames};
  levels.axes[1].rmsG = 0.125;
  const Status status{.of = kNames, .state = State::Up, .records = 7};
  const Spectrum spectrum{.of = kNames, .binHz = 2};
  publisher->Tell(levels);
  publisher->Tell(status);
  publisher->Tell(spectrum);
  ASSERT_TRUE(Eventually([&] { return publisher->State().isConnected; }));
  ASSERT_TRUE(PublishTo(broker_.Port(), kSpectra + "/get", "1"));
  EXPECT_TRUE(Eventually([&] {
    const auto statuses = subscriber.Payloads(kStatuses);
    return subscriber.Payloads(kLevels) == std::vector{JsonOf(levels)} && !statuses.empty() &&
           statuses.back() == JsonOf(status) &&
           subscriber.Payloads(kSpectra) == std::vector{JsonOf(spectrum)};
  }));
  const std::string answer = AnswerTo(PortOf(publisher->State().metricsUrl), kRequest, 5s);
  for (const char* line : {R"(,axis="y"} 0.125)", "kestrel_records_total{",
                           R"(kestrel_broker_connected{bench="bench 1",sensor="pump/2"} 1)"}) {
    EXPECT_NE(answer.find(line), std::string::npos) << line;
  }
}

// Without a broker and a command nothing waits, so no file is needed.
TEST_F(Publishers, MetricsAloneNeedNoFileAndTellAlarms) {
  const auto publisher = MakePublisher({.settings = {.metrics = MetricsSettings{}},
                                        .names = kNames,
                                        .outbox = (folder_.path() / "none" / "x.db").string()});
  publisher->Tell(Levels{.of = kNames});
  publisher->Tell(Status{.of = kNames});
  publisher->Tell(Spectrum{.of = kNames});
  EXPECT_TRUE(publisher->Tell(AlarmOf(0)));
  const PublisherState state = publisher->State();
  EXPECT_EQ(state, (PublisherState{.metricsUrl = state.metricsUrl}));
  const std::string answer = AnswerTo(PortOf(state.metricsUrl), kRequest, 5s);
  EXPECT_NE(answer.find(R"(event="begin"} 1)"), std::string::npos);
  EXPECT_EQ(answer.find("kestrel_broker_connected"), std::string::npos);
}

TEST_F(Publishers, ACommandAloneIsRunAndItsTroubleIsTold) {
  const auto publisher =
      MakePublisher({.settings = {.command = CommandSettings{.words = {"false"}}},
                     .names = kNames,
                     .outbox = (folder_.path() / "outbox.db").string()});
  publisher->Tell(Levels{.of = kNames});
  publisher->Tell(Status{.of = kNames});
  publisher->Tell(Spectrum{.of = kNames});
  EXPECT_TRUE(publisher->Tell(AlarmOf(0)));
  EXPECT_TRUE(Eventually([&] {
    const PublisherState state = publisher->State();
    return state.trouble == "The command false ended with status 1." && state.waitingAlarms == 0;
  }));
  EXPECT_FALSE(publisher->State().hasBroker);
  EXPECT_EQ(publisher->State().metricsUrl, "");
}

TEST_F(Publishers, APasswordMayComeFromTheEnvironment) {
  broker_.Stop();
  PublisherChoice choice = Choice();
  choice.settings.broker->user = "u";
  for (const char* password : {"", "secret"}) {
    setenv(kPasswordVariable, password, 1);
    EXPECT_NE(MakePublisher(choice), nullptr);
  }
  unsetenv(kPasswordVariable);
  EXPECT_NE(MakePublisher(choice), nullptr) << "a user may have none";
}

TEST_F(Publishers, ABrokerThatIsAwayIsTroubleAndNoFault) {
  broker_.Stop();
  const auto publisher = MakePublisher(Choice());
  EXPECT_TRUE(publisher->Tell(AlarmOf(0)));
  EXPECT_TRUE(Eventually(
      [&] { return publisher->State().trouble.find("cannot be reached") != std::string::npos; }));
  EXPECT_EQ(publisher->State().waitingAlarms, 1);
}

TEST_F(Publishers, SettingsThatCannotBeFollowedAreAFault) {
  PublisherChoice choice = Choice();
  choice.settings.broker->user = "u";
  choice.settings.broker->passwordFile = "/none";
  EXPECT_THROW((void)MakePublisher(choice), RuntimeError);
  choice = Choice();
  choice.settings.metrics = MetricsSettings{.port = static_cast<std::uint16_t>(broker_.Port())};
  EXPECT_THROW((void)MakePublisher(choice), RuntimeError);
}

TEST_F(Publishers, AFolderThatIsNotThereIsTroubleAndTheAlarmArrivesAllTheSame) {
  PublisherChoice choice = Choice();
  choice.outbox = (folder_.path() / "none" / "outbox.db").string();
  const auto publisher = MakePublisher(choice);
  EXPECT_FALSE(publisher->Tell(AlarmOf(0)));
  EXPECT_NE(publisher->State().trouble.find("see that the folder is there"), std::string::npos);
  EXPECT_TRUE(Eventually([&] { return publisher->State().waitingAlarms == 0; }));
}

TEST_F(Publishers, ADeadProcessIsToldByTheBroker) {
  const Subscriber subscriber(broker_.Port());
  ASSERT_TRUE(Hears(subscriber, broker_.Port()));
  EXPECT_TRUE(IsKilledDoing([&] {
    const auto publisher = MakePublisher(Choice());
    (void)Eventually([&] { return publisher->State().isConnected; });
    std::this_thread::sleep_for(100ms);
    kill(getpid(), SIGKILL);
  }));
  EXPECT_TRUE(Eventually([&] {
    const auto statuses = subscriber.Payloads(kStatuses);
    return !statuses.empty() && statuses.back() == LostJson(kNames);
  }));
}

// kill -9 at random moments: no alarm is lost. One may come twice where the process ended between
// the broker's receipt and its own note of it; it is then the same message with the same id.
TEST_F(Publishers, KillsLoseNoAlarm) {
  const char* wanted = std::getenv("KESTREL_KILLS");
  const int kills = wanted == nullptr ? 20 : std::atoi(wanted);
  const Subscriber subscriber(broker_.Port());
  ASSERT_TRUE(Hears(subscriber, broker_.Port()));
  Random random(1);
  const std::string said = (folder_.path() / "said").string();
  for (int i = 0; i < kills; ++i) {
    const auto delay = std::chrono::microseconds(random.Below(60'000));
    (void)IsKilledDoing([&] {
      // One half while it opens, the other half while it is in use, however slow the machine.
      if (i % 2 == 0) KillThisProcessIn(delay);
      const auto publisher = MakePublisher(Choice());
      if (i % 2 == 1) KillThisProcessIn(delay);
      for (int number = i * 100; number < (i + 1) * 100; ++number) {
        if (publisher->Tell(AlarmOf(number))) {
          std::ofstream(said, std::ios::app) << number << std::endl;
        }
        std::this_thread::sleep_for(3ms);
      }
    });
  }
  const auto publisher = MakePublisher(Choice());
  ASSERT_TRUE(Eventually([&] { return publisher->State().waitingAlarms == 0; }, 120s));
  std::this_thread::sleep_for(500ms);
  const std::vector<std::string> came = subscriber.Payloads(kAlarms);
  std::vector<int> numbers = NumbersOf(came);
  std::ranges::sort(numbers);
  std::ifstream lines(said);
  int count = 0;
  for (int number = 0; lines >> number; ++count) {
    EXPECT_TRUE(std::ranges::binary_search(numbers, number)) << number;
  }
  const std::size_t different = std::set(came.begin(), came.end()).size();
  const auto twice = came.size() - different;
  std::cout << count << " alarms, " << kills << " kills, " << twice << " came twice\n";
  EXPECT_GT(count, kills / 4);
  EXPECT_LE(twice, static_cast<std::size_t>(1 + kills / 10));
}

}  // namespace
}  // namespace kestrel::publish
