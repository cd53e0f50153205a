// Regional settings from the environment.
// SPDX-License-Identifier: MIT
#include "platform/linux/system_locale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <ctime>
#include <locale>
#include <optional>
#include <string>

#include "support/comma_locale.h"

namespace kestrel {
namespace {

using testing::AnyOf;

std::string Formatted(const char* format, std::time_t moment) {
  tm local{};
  localtime_r(&moment, &local);
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &local)};
}

// The current moment may pass into the next second between the two looks at the clock.
testing::Matcher<const std::string&> NowAs(const char* format) {
  const std::time_t now = std::time(nullptr);
  return AnyOf(Formatted(format, now), Formatted(format, now + 1));
}

class SystemLocaleTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!comma_.installed()) GTEST_SKIP() << "the system builds no locales";
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LC_NUMERIC", "LC_TIME", "LANG"}) {
      comma_.environment().Set(name, std::nullopt);
    }
  }
  void Set(const char* name, const std::optional<std::string>& value) {
    comma_.environment().Set(name, value);
  }

 private:
  CommaLocale comma_;
};

TEST_F(SystemLocaleTest, NothingSetGivesThePlainEnglishOne) {
  const auto date = NowAs("%m/%d/%y");
  const auto time = NowAs("%H:%M:%S");
  SystemLocale locale;
  EXPECT_EQ(locale.DecimalMark(), '.');
  EXPECT_THAT(locale.ShortDate(), date);
  EXPECT_THAT(locale.Time(), time);
}

TEST_F(SystemLocaleTest, EnvironmentNamesTheLocale) {
  for (const char* variable : {"LC_ALL", "LANG"}) {
    SCOPED_TRACE(variable);
    Set(variable, CommaLocale::kName);
    const auto date = NowAs("%d.%m.%Y");
    const auto time = NowAs("%H.%M.%S");
    SystemLocale locale;
    EXPECT_EQ(locale.DecimalMark(), ',');
    EXPECT_THAT(locale.ShortDate(), date);
    EXPECT_THAT(locale.Time(), time);
    Set(variable, std::nullopt);
  }
}

TEST_F(SystemLocaleTest, NumbersAndTimesMayComeFromDifferentLocales) {
  Set("LC_NUMERIC", CommaLocale::kName);
  const auto date = NowAs("%m/%d/%y");
  SystemLocale locale;
  EXPECT_EQ(locale.DecimalMark(), ',');
  EXPECT_THAT(locale.ShortDate(), date);
}

TEST_F(SystemLocaleTest, LocaleThatIsNotInstalledFallsBackToPlainEnglish) {
  Set("LC_ALL", "qq_QQ.UTF-8");
  const auto date = NowAs("%m/%d/%y");
  SystemLocale locale;
  EXPECT_EQ(locale.DecimalMark(), '.');
  EXPECT_THAT(locale.ShortDate(), date);
}

TEST_F(SystemLocaleTest, OneMissingCategoryDoesNotTakeTheOthersWithIt) {
  Set("LC_TIME", "qq_QQ.UTF-8");
  Set("LC_NUMERIC", CommaLocale::kName);
  const auto date = NowAs("%m/%d/%y");
  SystemLocale locale;
  EXPECT_EQ(locale.DecimalMark(), ',');
  EXPECT_THAT(locale.ShortDate(), date);
}

TEST_F(SystemLocaleTest, ProcessKeepsItsOwnLocale) {
  Set("LC_ALL", CommaLocale::kName);
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const std::locale globalBefore;
  SystemLocale locale;
  ASSERT_EQ(locale.DecimalMark(), ',');
  EXPECT_NE(locale.ShortDate(), "");
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
  EXPECT_TRUE(std::locale() == globalBefore);
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "%.1f", 1.5);
  EXPECT_STREQ(text.data(), "1.5");
}

}  // namespace
}  // namespace kestrel
