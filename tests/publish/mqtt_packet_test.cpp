// What a broker says, taken apart before the library reads it.
// SPDX-License-Identifier: MIT
#include "publish/mqtt_packet.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrel::publish {
namespace {

using namespace std::string_literals;

TEST(SizesOfMessages, AreKnownWhenTheHeadHasCome) {
  EXPECT_EQ(SizeOfFirst(""), std::nullopt);
  EXPECT_EQ(SizeOfFirst("\x30"), std::nullopt);
  EXPECT_EQ(SizeOfFirst("\xD0\x00"s), 2U);
  EXPECT_EQ(SizeOfFirst("\x30\x7Fx"), 129U);
  EXPECT_EQ(SizeOfFirst("\x30\x80"), std::nullopt);
  EXPECT_EQ(SizeOfFirst("\x30\x80\x01"), 131U);
  EXPECT_EQ(SizeOfFirst("\x30\xFF\xFF\x03"), 65535U + 4);
  EXPECT_EQ(SizeOfFirst("\x30\xFF\xFF\xFF\x7F"), 268435455U + 5);
  EXPECT_GT(SizeOfFirst("\x30\xFF\xFF\xFF\xFF").value_or(0), 268435455U + 5) << "longer than any";
}

// A message of a kind, its size in one byte.
std::string Message(int kind, const std::string& body) {
  return std::string{static_cast<char>(kind), static_cast<char>(body.size())} + body;
}

// What may be added to a welcome, with its size before it.
std::string Welcome(const std::string& properties) {
  return Message(0x20, "\0\0"s + static_cast<char>(properties.size()) + properties);
}

TEST(Messages5, MayBearWhateverExists) {
  EXPECT_TRUE(HasKnownProperties(Welcome("")));
  for (const int kind : {1, 23, 25, 36, 37, 40, 41, 42}) {
    EXPECT_TRUE(HasKnownProperties(Welcome(std::string{static_cast<char>(kind), 1}))) << kind;
  }
  for (const int kind : {19, 33, 34, 35}) {
    EXPECT_TRUE(HasKnownProperties(Welcome(static_cast<char>(kind) + "ab"s))) << kind;
  }
  for (const int kind : {2, 17, 24, 39}) {
    EXPECT_TRUE(HasKnownProperties(Welcome(static_cast<char>(kind) + "abcd"s))) << kind;
  }
  for (const int kind : {3, 8, 9, 18, 21, 22, 26, 28, 31}) {
    EXPECT_TRUE(HasKnownProperties(Welcome(static_cast<char>(kind) + "\0\3abc"s))) << kind;
  }
  EXPECT_TRUE(HasKnownProperties(Welcome("\x0B\x80\x01"s)));
  EXPECT_TRUE(HasKnownProperties(Welcome("\x26\0\1a\0\2bc"s)));
  EXPECT_TRUE(HasKnownProperties(Welcome("\x21\0\x14\x22\0\x0A"s))) << "two";
}

TEST(Messages5, WithWhatDoesNotExistCannotBeRead) {
  for (const int kind : {0, 4, 7, 10, 16, 20, 27, 30, 32, 43, 127}) {
    EXPECT_FALSE(HasKnownProperties(Welcome(static_cast<char>(kind) + "\0\0\0\0"s))) << kind;
  }
  EXPECT_FALSE(HasKnownProperties(Welcome("\xA1\x01"s))) << "33 and a bit that is not looked at";
}

TEST(Messages5, ThatEndTooEarlyCannotBeRead) {
  for (const std::string& properties :
       {"\x24"s, "\x21\0"s, "\x27\0\0\0"s, "\x0B"s, "\x0B\x80"s, "\x1F"s, "\x1F\0"s, "\x1F\0\2a"s,
        "\x26\0\1a"s, "\x26\0\1a\0\2b"s, "\x80"s}) {
    EXPECT_FALSE(HasKnownProperties(Welcome(properties)));
  }
  EXPECT_FALSE(HasKnownProperties(""));
  EXPECT_FALSE(HasKnownProperties("\x20"));
  EXPECT_FALSE(HasKnownProperties(Message(0x20, "")));
  EXPECT_FALSE(HasKnownProperties(Message(0x20, "\0"s)));
  EXPECT_FALSE(HasKnownProperties(Message(0x20, "\0\0\5"s))) << "five bytes that are not there";
}

TEST(Messages5, OfEachKindHaveThemAtTheirOwnPlace) {
  const std::string good = "\3\x21\0\1"s;
  const std::string bad = "\3\x20\0\1"s;
  const struct {
    int kind;
    std::string before;
  } kinds[] = {{0x20, "\0\0"s},       {0x90, "\0\1"s},       {0xB0, "\0\1"s},   {0x30, "\0\2ab"s},
               {0x32, "\0\2ab\0\1"s}, {0x34, "\0\2ab\0\1"s}, {0x40, "\0\1\0"s}, {0x50, "\0\1\0"s},
               {0x62, "\0\1\0"s},     {0x70, "\0\1\0"s},     {0xE0, "\0"s},     {0xF0, "\0"s}};
  for (const auto& [kind, before] : kinds) {
    EXPECT_TRUE(HasKnownProperties(Message(kind, before + good))) << kind;
    EXPECT_FALSE(HasKnownProperties(Message(kind, before + bad))) << kind;
    EXPECT_FALSE(HasKnownProperties(Message(kind, before + "\4\x21\0\1"s))) << kind;
  }
  EXPECT_TRUE(HasKnownProperties(Message(0xD0, ""))) << "an answer to a sign of life has none";
}

TEST(Messages5, MayLeaveReasonsOut) {
  EXPECT_TRUE(HasKnownProperties(Message(0x20, "\0\1"s))) << "of a broker that refuses version 5";
  for (const int kind : {0x40, 0x50, 0x62, 0x70}) {
    EXPECT_TRUE(HasKnownProperties(Message(kind, "\0\1"s))) << kind;
    EXPECT_TRUE(HasKnownProperties(Message(kind, "\0\1\x10"s))) << kind;
    EXPECT_FALSE(HasKnownProperties(Message(kind, "\0"s))) << kind;
  }
  EXPECT_TRUE(HasKnownProperties(Message(0xE0, "")));
  EXPECT_TRUE(HasKnownProperties(Message(0xE0, "\x8B")));
}

}  // namespace
}  // namespace kestrel::publish
