// Tests of monitoring started, followed and ended over a process that the test plays.
// SPDX-License-Identifier: MIT
#include "ui/watch/monitor_runner.h"

#include <gmock/gmock.h>

#include "support/fake_clock.h"
#include "ui/watch/alarm_teller.h"
#include "ui/watch/fake_monitor.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Phase = MonitorRunner::Phase;
using testing::ElementsAre;
using testing::IsEmpty;

class Runner : public testing::Test {
 protected:
  MonitorRunner::Wish Wish() {
    MonitorRunner::Wish wish{.file = "/plans/pump.plan", .archive = {"/data/archive.db"}};
    wish.plan.sensor = "Pump 7";
    return wish;
  }
  void Begin() { ASSERT_EQ(runner_.Start(Wish()), QString()); }

  FakeClock clock_;
  FakeMonitor fake_;
  QString whyNot_;
  int lent_ = 0;
  int takenBack_ = 0;
  MonitorRunner runner_{clock_,
                        {.make = fake_.Make(),
                         .lend =
                             [this](const monitor::Plan&) {
                               if (whyNot_.isEmpty()) ++lent_;
                               return whyNot_;
                             },
                         .takeBack = [this] { ++takenBack_; }}};
};

TEST_F(Runner, StartsTheProgramWithPlanAndArchiveAndLendsTheSensor) {
  Begin();
  EXPECT_EQ(fake_.arguments, (QStringList{"--json", "--archive", "/data/archive.db", "monitor",
                                          "/plans/pump.plan", "--end-with-input"}));
  EXPECT_EQ(lent_, 1);
  EXPECT_EQ(runner_.Now(), Phase::Running);
  EXPECT_FALSE(runner_.Account());
  EXPECT_EQ(runner_.Place().text, "/data/archive.db");
}

TEST_F(Runner, LeavesThePlansOwnArchiveToThePlan) {
  auto wish = Wish();
  wish.plan.archive = "/other.db";
  ASSERT_EQ(runner_.Start(wish), QString());
  EXPECT_EQ(fake_.arguments,
            (QStringList{"--json", "monitor", "/plans/pump.plan", "--end-with-input"}));
  EXPECT_EQ(runner_.Place().text, "/other.db");
}

TEST_F(Runner, SaysWhyItDoesNotBegin) {
  auto nowhere = Wish();
  nowhere.archive = {};
  EXPECT_TRUE(runner_.Start(nowhere).contains("no archive"))
      << runner_.Start(nowhere).toStdString();
  fake_.isMissing = true;
  EXPECT_TRUE(runner_.Start(Wish()).contains("kestrel-cli"));
  fake_.isMissing = false;
  whyNot_ = "A capture is under way.";
  EXPECT_EQ(runner_.Start(Wish()), whyNot_);
  EXPECT_EQ(fake_.begun, 0);
  EXPECT_FALSE(runner_.Running());
  EXPECT_EQ(takenBack_, 0);
}

TEST_F(Runner, CountsDownToTheNextCapture) {
  Begin();
  EXPECT_FALSE(runner_.NextIn());
  fake_.Tell({.nextIn = 10.0});
  EXPECT_DOUBLE_EQ(*runner_.NextIn(), 10);
  clock_.WaitUntil(clock_.Monotonic() + 4s);
  EXPECT_NEAR(*runner_.NextIn(), 6, 1e-6);
  clock_.WaitUntil(clock_.Monotonic() + 40s);
  EXPECT_DOUBLE_EQ(*runner_.NextIn(), 0);
  fake_.Tell({});
  EXPECT_FALSE(runner_.NextIn()) << "of the sensor's own timer nothing is known";
}

TEST_F(Runner, AskedToEndItEndsAndTheSensorComesBack) {
  Begin();
  fake_.Tell({.records = 3});
  runner_.Stop();
  runner_.Stop();
  EXPECT_EQ(fake_.askedToEnd, 1);
  EXPECT_EQ(runner_.Now(), Phase::Ending);
  EXPECT_EQ(takenBack_, 0);
  bool byItself = true;
  QObject::connect(&runner_, &MonitorRunner::Ended, [&](bool is) { byItself = is; });
  fake_.End();
  EXPECT_FALSE(byItself);
  EXPECT_EQ(takenBack_, 1);
  EXPECT_EQ(runner_.Now(), Phase::Idle);
  EXPECT_EQ(runner_.Trouble(), QString());
  EXPECT_EQ(runner_.Account()->records, 3) << "what was told last stays";
  Begin();
  EXPECT_FALSE(runner_.Account());
}

TEST_F(Runner, AnEndByItselfIsToldWithTheLastWords) {
  Begin();
  fake_.Say("Kept record 1.", false);
  fake_.hears.complaint("A monitor of Pump 7 at Hall 3 runs already.");
  fake_.End({.code = 1});
  EXPECT_EQ(takenBack_, 1);
  EXPECT_EQ(runner_.Trouble(),
            "The monitor ended by itself. Its last words: A monitor of Pump 7 at Hall 3 runs "
            "already.");
  Begin();
  EXPECT_EQ(runner_.Trouble(), QString());
  fake_.End({.isCrash = true});
  EXPECT_EQ(runner_.Trouble(), "The monitor broke off.");
  Begin();
  fake_.End({.hasBegun = false, .fault = "no permission"});
  EXPECT_TRUE(runner_.Trouble().contains("cannot be run: no permission"));
  Begin();
  runner_.Stop();
  fake_.End({.code = 1});
  EXPECT_NE(runner_.Trouble(), QString()) << "asked to, but not in order";
}

TEST_F(Runner, GarbageIsNoAccount) {
  Begin();
  for (const char* line : {"", "{", "[1]", "hello", "{\"doing\":1}"}) fake_.hears.line(line);
  EXPECT_FALSE(runner_.Account());
}

TEST_F(Runner, WhatRunsIsLeftToItselfAtTheEnd) {
  {
    MonitorRunner other(clock_, {.make = fake_.Make()});
    ASSERT_EQ(other.Start(Wish()), QString());
  }
  EXPECT_EQ(fake_.left, 1);
}

class Teller : public Runner {
 protected:
  RecordingNotifier notifier_;
  AlarmTeller teller_{runner_, &notifier_};
};

TEST_F(Teller, TellsEachAlarmOnceAtItsBeginningAndAtItsEnd) {
  Begin();
  monitor::Account account{.alarms = {Lasting("alarm", "Warning 1, X")}};
  fake_.Tell(account);
  EXPECT_THAT(notifier_.told, IsEmpty()) << "it stood before and was told then";
  account.alarms.push_back(Lasting("alarm", "Fault 3, Z: 1.2 g"));
  fake_.Tell(account);
  fake_.Tell(account);
  account.alarms.erase(account.alarms.begin());
  fake_.Tell(account);
  EXPECT_THAT(notifier_.told,
              ElementsAre("Alarm: Pump 7|Fault 3, Z: 1.2 g", "Alarm over: Pump 7|Warning 1, X"));
}

TEST_F(Teller, ManyAtOnceAreOneNotification) {
  Begin();
  fake_.Tell({});
  monitor::Account account;
  for (int i = 1; i <= 5; ++i) {
    account.alarms.push_back(Lasting("alarm", "Alarm " + std::to_string(i)));
  }
  fake_.Tell(account);
  EXPECT_THAT(notifier_.told, ElementsAre("Alarm: Pump 7|Alarm 1\nAlarm 2\nAlarm 3\nand 2 more"));
}

TEST_F(Teller, TellsOfAnEndByItselfAndNotOfOneThatWasAskedFor) {
  Begin();
  fake_.End({.isCrash = true});
  EXPECT_THAT(notifier_.told, ElementsAre("Monitoring has ended: Pump 7|The monitor broke off."));
  Begin();
  runner_.Stop();
  fake_.End();
  EXPECT_EQ(notifier_.told.size(), 1U);
}

TEST_F(Teller, SwitchedOffItTellsNothingAndIsRememberedSo) {
  EXPECT_TRUE(teller_.IsOn());
  teller_.SwitchOn(false);
  Begin();
  fake_.Tell({});
  fake_.Tell({.alarms = {Lasting("alarm", "Fault 3, Z")}});
  fake_.End({.isCrash = true});
  EXPECT_THAT(notifier_.told, IsEmpty());
  const AlarmTeller next(runner_, &notifier_);
  EXPECT_FALSE(next.IsOn());
}

}  // namespace
}  // namespace kestrel
