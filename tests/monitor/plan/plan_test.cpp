// Tests of plans: what they hold, and every mistake with its line.
// SPDX-License-Identifier: MIT
#include "monitor/plan/plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "exchange/texts.h"
#include "monitor/plan/plan_from.h"
#include "support/seeds.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;

constexpr const char* kUsual =
    "# the pump in hall 3\n"
    "bench = Hall 3\n"
    "sensor = Pump 7, drive end\n"
    "connect = simulated bearing-fault\n"
    "archive = postgresql://monitor@db/kestrel\n"
    "every = 10 s\n"
    "machine = Pump 7\n"
    "rpm = 2950\n"
    "\n"
    "[capture]\n"
    "range = 5\n"
    "option = 1\n"
    "averages = 4\n"
    "bands = AlarmSpectrum_Pump.csv\n"
    "[capture]\n"
    "mode = time\n"
    "[wide]\n"
    "window = flattop\n"
    "[judge]\n"
    "alarm = 3 of 5\n"
    "hysteresis = 1.5\n"
    "severity = group 1, rigid\n"
    "fault = D\n"
    "[publish]\n"
    "broker = localhost\n";

Plan Good(const std::string& text) {
  const auto read = PlanOf(text);
  if (const auto* mistakes = std::get_if<Mistakes>(&read)) {
    ADD_FAILURE() << mistakes->front().Text("plan");
    return {};
  }
  return std::get<Plan>(read);
}

Mistakes Bad(const std::string& text) {
  const auto read = PlanOf(text);
  return std::holds_alternative<Mistakes>(read) ? std::get<Mistakes>(read) : Mistakes{};
}

// The usual plan with one line replaced.
std::string With(const std::string& line, const std::string& other) {
  std::string text = kUsual;
  const std::size_t at = text.find(line);
  EXPECT_NE(at, std::string::npos) << line;
  return text.replace(at, line.size(), other);
}

TEST(Plan, HoldsWhatItsLinesSay) {
  const Plan plan = Good(kUsual);
  EXPECT_EQ(plan.bench, "Hall 3");
  EXPECT_EQ(plan.sensor, "Pump 7, drive end");
  EXPECT_TRUE(plan.road.simulated);
  EXPECT_EQ(plan.road.scenario, "bearing-fault");
  EXPECT_EQ(plan.archive, "postgresql://monitor@db/kestrel");
  EXPECT_EQ(plan.every, 10s);
  EXPECT_EQ(plan.remarks.machine, "Pump 7");
  EXPECT_EQ(plan.remarks.rpm, 2950);
  ASSERT_EQ(plan.steps.size(), 3U);
  EXPECT_EQ(plan.steps[0], (Step{.kind = StepKind::Spectrum,
                                 .range = 1,
                                 .option = 1,
                                 .averages = 4,
                                 .bands = "AlarmSpectrum_Pump.csv",
                                 .line = 10}));
  EXPECT_EQ(plan.steps[1].kind, StepKind::TimeRecord);
  EXPECT_EQ(plan.steps[2].kind, StepKind::Wide);
  EXPECT_EQ(plan.steps[2].window, 2);
  EXPECT_EQ(plan.judging.rule.m, 3);
  EXPECT_EQ(plan.judging.rule.n, 5);
  EXPECT_EQ(plan.judging.rule.hysteresisDb, 1.5);
  ASSERT_TRUE(plan.judging.severity);
  EXPECT_EQ(plan.judging.severity->cd, 7.1);
  ASSERT_EQ(plan.publish.size(), 1U);
  EXPECT_EQ(plan.publish[0], (PlanLine{25, "broker", "localhost"}));
}

TEST(Plan, TakesLinesOfOtherSystemsAndAByteOrderMark) {
  std::string text = kUsual;
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
    text.replace(at, 1, "\r\n");
  }
  EXPECT_EQ(Good("\xEF\xBB\xBF" + text), Good(kUsual));
}

TEST(Plan, WrittenAndReadAgainIsTheSame) {
  Plan plan = Good(kUsual);
  Plan again = Good(TextOf(plan));
  for (Plan* each : {&plan, &again}) {
    for (Step& step : each->steps) step.line = 0;
    for (PlanLine& line : each->publish) line.line = 0;
  }
  EXPECT_EQ(again, plan);
}

struct Wrong {
  std::string line;
  std::string other;
  std::size_t at;
  std::string what;
};

TEST(Plan, EachMistakeIsToldWithItsLine) {
  const std::vector<Wrong> all{
      {"bench = Hall 3", "bench =", 2, "\"bench\": there is no value"},
      {"bench = Hall 3", "bench = Hall\t3", 2, "bench: \"Hall?3\" holds a control character"},
      {"bench = Hall 3", "bench = \xFF\xFE", 2, "is not UTF-8 text"},
      {"bench = Hall 3", "bench = " + std::string(10000, 'x'), 2,
       "has 10000 bytes; at most 100 are allowed"},
      {"bench = Hall 3", "bank = Hall 3", 2, "\"bank\" is not one of the keys here: bench, sensor"},
      {"bench = Hall 3", "sensor = A\nsensor = B", 3, "\"sensor\" stands here a second time"},
      {"bench = Hall 3", "Hall 3", 2, "\"Hall 3\" is neither \"key = value\" nor a [section]"},
      {"simulated bearing-fault", "simulated cheese", 4, "\"cheese\" is not one of running"},
      {"simulated bearing-fault", "carrier pigeon", 4,
       "\"carrier pigeon\" is not one of usb, parallel, port, simulated"},
      {"simulated bearing-fault", "usb Ezusb-4", 4, "\"Ezusb-4\" is not one of Ezusb-0"},
      {"simulated bearing-fault", "parallel zz", 4, "\"zz\" is not a port address like 378"},
      {"simulated bearing-fault", "port", 4, "\"port\" needs the name of a device"},
      {"every = 10 s", "every = soon", 6, "every: \"soon\" is not a time like 10 s"},
      {"every = 10 s", "every = 10 fortnights", 6, "is not a time like 10 s"},
      {"every = 10 s", "every = 0", 6, "\"0\" is not between 1 s and 31 d"},
      {"every = 10 s", "every = 99999999 d", 6, "is not between 1 s and 31 d"},
      {"every = 10 s", "every = -5", 6, "\"-5\" is not a time"},
      {"rpm = 2950", "rpm = fast", 8, "rpm: \"fast\" is not a number from 0 to 10000000"},
      {"rpm = 2950", "rpm = 0", 8, "rpm: \"0\" is no speed; leave it out for a shaft at rest"},
      {"rpm = 2950", "rpm = 10000001", 8, "rpm: \"10000001\" is not a number from 0 to 10000000"},
      {"rpm = 2950", "rpm = nan", 8, "rpm: \"nan\" is not a number"},
      {"range = 5", "range = 7", 11, "range: \"7\" is not one of 1, 5, 20, 70 (g)"},
      {"option = 1", "option = 4", 12, "option: \"4\" is not a whole number from 0 to 3"},
      {"option = 1", "option = 1.5", 12, "option: \"1.5\" is not a whole number from 0 to 3"},
      {"averages = 4", "averages = 256", 13, "\"256\" is not a whole number from 1 to 255"},
      {"mode = time", "mode = fft", 16, "mode: \"fft\" is not one of spectrum, time"},
      {"mode = time", "mode = time\nbands = x.csv", 15, "a time record has no bands"},
      {"[wide]", "[wide", 17, "\"[wide\" lacks its closing bracket"},
      {"[wide]", "[broad]", 17, "is not one of [capture], [wide], [timer], [judge], [publish]"},
      {"window = flattop", "window = glass", 18,
       "\"glass\" is not one of rectangular, hanning, flattop"},
      {"window = flattop", "option = 1", 18, "\"option\" is not one of the keys here"},
      {"alarm = 3 of 5", "alarm = 6 of 5", 20, "\"6 of 5\" is not a rule like 3 of 5"},
      {"alarm = 3 of 5", "alarm = 3", 20, "\"3\" is not a rule like 3 of 5"},
      {"hysteresis = 1.5", "hysteresis = -1", 21, "\"-1\" is not a number from 0 to 60"},
      {"group 1, rigid", "2 1 3", 22, "nor three rising limits in mm/s"},
      {"fault = D", "fault = A", 23, "\"A\" is not one of B, C, D"},
      {"[judge]", "[publish]\n[judge]", 25, "the section [publish] stands here a second time"},
      {"[wide]", "[timer]", 17, "[timer] stands alone"}};
  for (const Wrong& wrong : all) {
    const Mistakes mistakes = Bad(With(wrong.line, wrong.other));
    const bool isTold = std::ranges::any_of(mistakes, [&](const Mistake& mistake) {
      return mistake.line == wrong.at && mistake.what.find(wrong.what) != std::string::npos;
    });
    EXPECT_TRUE(isTold) << wrong.other << "\n"
                        << (mistakes.empty() ? "no mistake" : mistakes.front().Text("plan"));
  }
}

TEST(Plan, AKeyThatIsNoTextIsToldAsOne) {
  const auto read =
      PlanOf("bench = b\nsensor = s\nevery = 1 h\n[wide]\n[publish]\n\xF3user = a\tb\n");
  const auto* mistakes = std::get_if<Mistakes>(&read);
  ASSERT_NE(mistakes, nullptr);
  for (const Mistake& mistake : *mistakes) EXPECT_TRUE(exchange::IsUtf8(mistake.what));
  EXPECT_EQ(mistakes->front().line, 6U);
}

TEST(Plan, AllMistakesAreToldAtOnceInTheOrderOfTheirLines) {
  const Mistakes mistakes = Bad("every = x\n[capture]\nrange = 2\noption = 9\n");
  ASSERT_EQ(mistakes.size(), 5U);
  EXPECT_EQ(mistakes[0].what, "bench: there is none; name the bench");
  EXPECT_EQ(mistakes[1].what, "sensor: there is none; name the sensor");
  EXPECT_EQ(mistakes[2].Text("a.plan"),
            "a.plan:1: every: \"x\" is not a time like 10 s, 5 min, 1 h or 1 d");
  EXPECT_EQ(mistakes[3].line, 3U);
  EXPECT_EQ(mistakes[4].line, 4U);
}

TEST(Plan, ACaptureThatLastsLongerThanThePeriodIsAMistake) {
  const Mistakes mistakes =
      Bad("bench = b\nsensor = s\nevery = 10 s\n[capture]\noption = 3\naverages = 255\n");
  ASSERT_EQ(mistakes.size(), 1U);
  EXPECT_EQ(mistakes[0].line, 4U);
  EXPECT_NE(mistakes[0].what.find("which is longer than every = 10 s"), std::string::npos)
      << mistakes[0].what;
}

TEST(Plan, TheSensorsTimerCountsSoFarAndNoFurther) {
  const auto with = [](const std::string& every) {
    return "bench = b\nsensor = s\nevery = " + every + "\n[timer]\n";
  };
  for (const char* every : {"1 s", "255 s", "256 min", "255 min", "240 min", "255 h"}) {
    EXPECT_TRUE(Bad(with(every)).empty()) << every;
  }
  for (const char* every : {"257 s", "256 h", "301 s"}) {
    const Mistakes mistakes = Bad(with(every));
    ASSERT_EQ(mistakes.size(), 1U) << every;
    EXPECT_EQ(mistakes[0].line, 4U);
    EXPECT_TRUE(mistakes[0].what.starts_with("the sensor's timer counts up to 255 seconds"));
  }
}

TEST(Plan, HasAHundredStepsAtMost) {
  std::string text = "bench = b\nsensor = s\nevery = 10 s\n";
  for (int i = 0; i < 100; ++i) text += "[capture]\n";
  EXPECT_TRUE(Bad(text).empty());
  const Mistakes mistakes = Bad(text + "[capture]\n[capture]\n");
  ASSERT_EQ(mistakes.size(), 1U);
  EXPECT_EQ(mistakes[0].Text("plan"), "plan:104: there are more than 100 steps");
}

TEST(Plan, AFaultIsNeverMilderThanAWarning) {
  const Mistakes mistakes = Bad(With("fault = D\n", "warning = D\nfault = C\n"));
  ASSERT_EQ(mistakes.size(), 1U);
  EXPECT_EQ(mistakes[0].Text("plan"), "plan: fault: its zone is below that of the warning");
  EXPECT_TRUE(Bad(With("fault = D\n", "warning = D\nfault = D\n")).empty());
}

TEST(Plan, StepsAreNamedByWhatTheyTake) {
  EXPECT_EQ(NameOf(Step{.kind = StepKind::Wide, .range = 3, .window = 1, .averages = 1}),
            "all options, 70 g, hanning, 1 average");
  EXPECT_EQ(NameOf(Step{.range = 0, .option = 2, .window = 0, .averages = 4}),
            "option 2, 1 g, rectangular, 4 averages");
  EXPECT_EQ(NameOf(Step{.kind = StepKind::TimeRecord, .range = 1, .option = 3}),
            "time record, option 3, 5 g");
}

TEST(Plan, AnEmptyFileAndAHugeOneAreNone) {
  EXPECT_EQ(Bad("").size(), 4U);
  EXPECT_EQ(Bad(std::string(kLargestPlan + 1, '\n')),
            (Mistakes{{0, "the file has more than 1048576 bytes"}}));
}

// Whatever bytes there are: a plan that is written the same again, or mistakes.
TEST(Plan, OfAnyBytesIsAPlanOrMistakes) {
  for (const unsigned seed : Seeds(3)) {
    std::mt19937 random(seed);
    for (int trial = 0; trial < 2000; ++trial) {
      std::string text = kUsual;
      for (int change = 0; change < 3; ++change) {
        const std::size_t at = random() % text.size();
        if (random() % 3 == 0) {
          text.erase(at, random() % 20);
        } else {
          text.insert(at, 1, static_cast<char>(random() % 256));
        }
        if (text.empty()) text = "x";
      }
      const auto read = PlanOf(text);
      if (const auto* plan = std::get_if<Plan>(&read)) {
        EXPECT_EQ(TextOf(Good(TextOf(*plan))), TextOf(*plan)) << text;
      } else {
        EXPECT_FALSE(std::get<Mistakes>(read).empty());
      }
    }
  }
}

TEST(PlanFrom, SettingsOfASensorMakeAPlanThatIsRead) {
  const PresentSettings present{
      .setup = {.mode = 0, .range = 2, .option = 3, .window = 2, .averages = 8},
      .road = {.adapter = 1},
      .bench = "Bench\n7",
      .sensor = std::string(300, 'x')};
  const Plan plan = Good(TextOf(PlanFrom(present)));
  EXPECT_EQ(plan.bench, "Bench 7");
  EXPECT_EQ(plan.sensor, std::string(100, 'x'));
  EXPECT_EQ(plan.road.adapter, 1);
  EXPECT_EQ(NameOf(plan.steps.at(0)), "option 3, 20 g, flattop, 8 averages");
  EXPECT_EQ(plan.every, 60s);
}

TEST(PlanFrom, SettingsThatNoSensorHasAreTheNearestOrTheUsualOnes) {
  const PresentSettings present{
      .setup = {.mode = 7, .range = 9, .option = -1, .window = 5, .averages = 300}};
  const Plan plan = Good(TextOf(PlanFrom(present)));
  EXPECT_EQ(NameOf(plan.steps.at(0)), "option 0, 70 g, flattop, 255 averages");
  EXPECT_EQ(NameOf(Good(TextOf(PlanFrom({}))).steps.at(0)), "option 0, 70 g, hanning, 1 average");
}

TEST(PlanText, ACodeThatHasNoWordIsWrittenAsTheFirst) {
  EXPECT_EQ(NameOf(Step{.range = 9, .window = 9}), NameOf(Step{.range = 0, .window = 0}));
}

TEST(PlanFrom, NamesAreMadeToFit) {
  PresentSettings present{.bench = " a\tb\n", .sensor = "\x01\x02"};
  present.setup.mode = 2;
  Plan plan = PlanFrom(present);
  EXPECT_EQ(plan.bench, "a b");
  EXPECT_EQ(plan.sensor, "sensor");
  EXPECT_EQ(plan.steps[0].kind, StepKind::TimeRecord);
  present.bench = std::string(99, 'x') + "\xC3\xBC";
  plan = PlanFrom(present);
  EXPECT_EQ(plan.bench, std::string(99, 'x')) << "no half character";
  EXPECT_EQ(Good(TextOf(plan)).bench, plan.bench);
}

TEST(PlanFrom, ASensorInTimerModeIsFollowedAtItsOwnPeriod) {
  const PresentSettings present{
      .setup = {.mode = 1, .range = 3, .option = 0, .window = 1, .averages = 1},
      .timerWord = 0x0105};
  const Plan plan = Good(TextOf(PlanFrom(present)));
  EXPECT_TRUE(plan.FollowsTimer());
  EXPECT_EQ(plan.every, 5min);
}

}  // namespace
}  // namespace kestrel::monitor
