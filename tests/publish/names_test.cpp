// Names that try to break topics, labels and lines.
// SPDX-License-Identifier: MIT
#include "publish/names.h"

#include <random>

#include "support/seeds.h"

namespace kestrel::publish {
namespace {

TEST(TopicLevels, OrdinaryNamesStayAsTheyAre) {
  EXPECT_EQ(TopicLevel("bench 1"), "bench 1");
  EXPECT_EQ(TopicLevel("Prüfstand_Süd-2.b"), "Prüfstand_Süd-2.b");
  EXPECT_EQ(TopicLevel("試験台"), "試験台");
  EXPECT_EQ(TopicOf({"bench 1", "pump"}, "levels"), "kestrel/bench 1/pump/levels");
}

TEST(TopicLevels, WhatMeansSomethingInATopicIsEscaped) {
  EXPECT_EQ(TopicLevel("a/b"), "a%2Fb");
  EXPECT_EQ(TopicLevel("+"), "%2B");
  EXPECT_EQ(TopicLevel("#"), "%23");
  EXPECT_EQ(TopicLevel("$SYS"), "%24SYS");
  EXPECT_EQ(TopicLevel("100%"), "100%25");
  EXPECT_EQ(TopicLevel(""), "%");
}

TEST(TopicLevels, ControlCharactersAndDamageAreEscaped) {
  EXPECT_EQ(TopicLevel(std::string("a\0b", 3)), "a%00b");
  EXPECT_EQ(TopicLevel("a\nb\x7F"), "a%0Ab%7F");
  EXPECT_EQ(TopicLevel("\xC2\x85"), "%C2%85");
  EXPECT_EQ(TopicLevel("\xFF\xC3"), "%FF%C3");
  EXPECT_EQ(TopicLevel("\xC0\xAF"), "%C0%AF");                // a slash in too many bytes
  EXPECT_EQ(TopicLevel("\xED\xA0\x80"), "%ED%A0%80");         // half of a pair
  EXPECT_EQ(TopicLevel("\xEF\xBF\xBF"), "%EF%BF%BF");         // no character
  EXPECT_EQ(TopicLevel("\xF4\x90\x80\x80"), "%F4%90%80%80");  // beyond the last
}

TEST(TopicLevels, SeparatorsAndPlacesWithoutCharactersAreEscapedAndTheirNeighboursAreNot) {
  for (const char* escaped : {"\xE2\x80\xA8", "\xE2\x80\xA9", "\xEF\xB7\x90", "\xEF\xB7\xAF",
                              "\xEF\xBF\xBE", "\xF0\x9F\xBF\xBE", "\xC2\x9F", "\x1F"}) {
    EXPECT_EQ(TopicLevel(escaped)[0], '%') << escaped;
  }
  for (const char* plain :
       {"\xE2\x80\xA7", "\xE2\x80\xAA", "\xEF\xB7\x8F", "\xEF\xB7\xB0", "\xEF\xBF\xBD", "\xC2\xA0",
        " ", "\xED\x9F\xBF", "\xEE\x80\x80", "\xF0\x90\x80\x80"}) {
    EXPECT_EQ(TopicLevel(plain), plain);
  }
  EXPECT_EQ(TopicLevel("\xF4\x8F\xBF\xBD"), "\xF4\x8F\xBF\xBD") << "one of the last";
  EXPECT_EQ(TopicLevel("\xE0\x80\xAF"), "%E0%80%AF") << "three bytes where one would do";
  EXPECT_EQ(TopicLevel("\xF0\x80\x80\xAF"), "%F0%80%80%AF");
  EXPECT_EQ(TopicLevel("\xF5\x80\x80\x80"), "%F5%80%80%80");
}

TEST(TopicLevels, LongNamesAreCutAndStayApart) {
  const std::string one = TopicLevel(std::string(10'000, 'a') + "1");
  const std::string other = TopicLevel(std::string(10'000, 'a') + "2");
  EXPECT_LE(one.size(), kLongestCleanName);
  EXPECT_LE(other.size(), kLongestCleanName);
  EXPECT_NE(one, other);
  EXPECT_TRUE(one.starts_with("aaaa"));
  EXPECT_EQ(TopicLevel(std::string(200, 'a')), std::string(200, 'a'));
  EXPECT_LE(TopicLevel(std::string(10'000, '/')).size(), kLongestCleanName);
}

// Nothing that a broker would refuse or take for a wildcard comes out, and no two names meet.
TEST(TopicLevels, OfRandomBytesAreOneLevelEach) {
  std::map<std::string, std::string> seen;
  for (const unsigned seed : Seeds(5)) {
    std::mt19937 random(seed);
    for (int i = 0; i < 2000; ++i) {
      std::string name(random() % 12, '\0');
      for (char& letter : name)
        letter = static_cast<char>("/+#$%a\xC3\xBC\xFF\n\xE2\x80"[random() % 12]);
      const std::string level = TopicLevel(name);
      EXPECT_FALSE(level.empty());
      EXPECT_EQ(level.find_first_of("/+#$\n\xFF"), std::string::npos) << level;
      EXPECT_EQ(CleanText(level), level) << level;
      const auto [known, isNew] = seen.emplace(level, name);
      EXPECT_EQ(known->second, name) << level;
    }
  }
}

TEST(CleanTexts, KeepWhatReadersTakeAndReplaceTheRest) {
  EXPECT_EQ(CleanText("Prüfstand \"1\" \\ 試験台"), "Prüfstand \"1\" \\ 試験台");
  EXPECT_EQ(CleanText("a\nb\rc\x1B"), "a�b�c�");
  EXPECT_EQ(CleanText("\xFF"
                      "a\xC3"),
            "�a�");
  EXPECT_EQ(CleanText("äää", 5), "ää");  // no half character
  EXPECT_EQ(CleanText(std::string(10'000, 'x')).size(), kLongestCleanName);
}

}  // namespace
}  // namespace kestrel::publish
