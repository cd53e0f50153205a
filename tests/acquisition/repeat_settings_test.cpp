// What is typed about repeated captures, taken or refused.
// SPDX-License-Identifier: MIT
#include "acquisition/repeat_settings.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

using namespace std::chrono_literals;

RepeatSettings Taken(const RepeatTexts& texts) {
  const auto checked = CheckRepeat(texts);
  const auto* error = std::get_if<Error>(&checked);
  EXPECT_EQ(error, nullptr) << error->what;
  return error == nullptr ? std::get<RepeatSettings>(checked) : RepeatSettings{};
}

Error Refused(const RepeatTexts& texts) {
  const auto checked = CheckRepeat(texts);
  const auto* error = std::get_if<Error>(&checked);
  EXPECT_NE(error, nullptr);
  return error == nullptr ? Error{} : *error;
}

Error OfSeconds(std::string_view seconds) {
  return Refused({.mode = RepeatMode::Every, .seconds = seconds, .times = {}});
}
Error OfTimes(std::string_view times) {
  return Refused({.mode = RepeatMode::AtOnce, .seconds = {}, .times = times});
}

TEST(RepeatTextsAre, TakenWithAPointAsDecimalMark) {
  const RepeatSettings settings =
      Taken({.mode = RepeatMode::Every, .seconds = " 2.5 ", .times = "12"});
  EXPECT_EQ(settings.mode, RepeatMode::Every);
  EXPECT_EQ(settings.period, 2500ms);
  EXPECT_EQ(settings.times, 12);
}

TEST(RepeatTextsAre, TakenUpToTheirBounds) {
  EXPECT_EQ(Taken({.seconds = "0.1", .times = {}}).period, 100ms);
  EXPECT_EQ(Taken({.seconds = "604800", .times = {}}).period, 168h);
  EXPECT_EQ(Taken({.seconds = "6.048e5", .times = "1"}).times, 1);
  EXPECT_EQ(Taken({.seconds = "1", .times = "1e6"}).times, 1'000'000);
}

TEST(RepeatTextsAre, UntilStoppedWithoutANumber) {
  EXPECT_FALSE(Taken({.mode = RepeatMode::AtOnce, .seconds = {}, .times = {}}).times);
}

TEST(RepeatTextsAre, OfNoConcernWhereTheModeDoesNotNeedThem) {
  EXPECT_EQ(Taken({.mode = RepeatMode::AtOnce, .seconds = "abc", .times = {}}).mode,
            RepeatMode::AtOnce);
  EXPECT_EQ(Taken({.mode = RepeatMode::FollowTimer, .seconds = "", .times = "3"}).times, 3);
}

TEST(RepeatTextsAre, RefusedWithTheirCureWhenThePeriodIsNone) {
  EXPECT_EQ(OfSeconds(""), (Error{"The time from one capture to the next is missing.",
                                  kRepeatSeconds, "Type it in seconds."}));
  for (const char* text :
       {"abc", "2,5", "1 000", "5 s", "0x10", "nan", "inf", "--1", "\u0661\u0660", "\uFF15"}) {
    EXPECT_EQ(OfSeconds(text),
              (Error{"\"" + std::string(text) + "\" is not a number of seconds.", kRepeatSeconds,
                     "Type digits, with a point as decimal mark: 2.5"}));
  }
}

TEST(RepeatTextsAre, RefusedWithTheirCureWhenThePeriodIsTooShort) {
  for (const char* text : {"0", "-5", "0.0999", "1e-400", "-1e999"}) {
    EXPECT_EQ(OfSeconds(text).cure, "For captures without a pause choose At once.") << text;
  }
}

TEST(RepeatTextsAre, RefusedWithTheirCureWhenThePeriodIsTooLong) {
  for (const char* text : {"604800.1", "1e999", "99999999999999999999"}) {
    EXPECT_EQ(OfSeconds(text), (Error{"\"" + std::string(text) + "\" is too long.", kRepeatSeconds,
                                      "The longest is 604800 s, one week."}));
  }
}

TEST(RepeatTextsAre, RefusedWhenTheNumberIsNone) {
  const std::string cure = "Type a whole number from 1 to 1000000, or choose Until stopped.";
  EXPECT_EQ(OfTimes(" "), (Error{"The number of captures is missing.", kRepeatTimes, cure}));
  EXPECT_EQ(OfTimes("ten").what, "\"ten\" is not a number of captures.");
  EXPECT_EQ(OfTimes("\u0663").what, "\"\u0663\" is not a number of captures.");
  EXPECT_EQ(OfTimes("0").what, "\"0\" captures are too few.");
  EXPECT_EQ(OfTimes("-3").what, "\"-3\" captures are too few.");
  EXPECT_EQ(OfTimes("2.5").what, "\"2.5\" is not a whole number.");
  EXPECT_EQ(OfTimes("1000001").what, "\"1000001\" captures are too many.");
  EXPECT_EQ(OfTimes("1e999").what, "\"1e999\" captures are too many.");
  EXPECT_EQ(OfTimes("1e999").cure, cure);
}

TEST(RepeatTextsAre, CutBetweenCharactersWhereTheyAreLong) {
  const std::string text = std::string(39, 'a') + "\u00E9" + std::string(1000, 'b');
  EXPECT_EQ(OfSeconds(text).what,
            "\"" + std::string(39, 'a') + "...\" is not a number of seconds.");
}

TEST(ATimerPeriod, IsACountWithItsUnit) {
  EXPECT_EQ(TimerPeriod(0x000A), 10s);
  EXPECT_EQ(TimerPeriod(0x0102), 2min);
  EXPECT_EQ(TimerPeriod(0x0203), 3h);
  EXPECT_FALSE(TimerPeriod(0x0200));
}

}  // namespace
}  // namespace kestrel
