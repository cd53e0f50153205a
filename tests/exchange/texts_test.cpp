// Texts of files: damaged UTF-8, texts cut to a length, numbers in columns, and numbered lines.
// SPDX-License-Identifier: MIT
#include "exchange/texts.h"

#include <gmock/gmock.h>

#include "exchange/text_lines.h"

namespace kestrel::exchange {
namespace {

const std::string kMark = "\xEF\xBF\xBD";  // what stands for a damaged byte

TEST(Texts, WholeCharactersOfEveryLengthAreUtf8) {
  for (const char* text : {"", "a", "\x7F", "\u0080", "\u07FF", "\u0800", "\uD7FF", "\uE000",
                           "\uFFFF", "\U00010000", "\U0010FFFF", "K\u00FChl \U0001F527"}) {
    EXPECT_TRUE(IsUtf8(text)) << text;
    EXPECT_EQ(CleanUtf8(text), text);
    EXPECT_EQ(AsUtf8(text), text);
  }
  EXPECT_EQ(Characters("a\u00FC\u20AC\U0001F527"), U"a\u00FC\u20AC\U0001F527");
}

TEST(Texts, BytesThatNoCharacterIsMadeOfAreMarkedOneByOne) {
  struct Damaged {
    const char* text;
    std::size_t marks;
  };
  for (const auto& [text, marks] :
       {Damaged{"\x80", 1}, Damaged{"\xC1\xBF", 2}, Damaged{"\xC3", 1}, Damaged{"\xE0\x9F\xBF", 3},
        Damaged{"\xED\xA0\x80", 3}, Damaged{"\xED\xBF\xBF", 3}, Damaged{"\xF0\x8F\xBF\xBF", 4},
        Damaged{"\xF4\x90\x80\x80", 4}, Damaged{"\xF8\x88\x80\x80", 4}, Damaged{"\xE2\x82", 2},
        Damaged{"\xC3\xC3", 2}, Damaged{"\xFF", 1}}) {
    EXPECT_FALSE(IsUtf8(text)) << marks;
    std::string wanted;
    for (std::size_t i = 0; i < marks; ++i) wanted += kMark;
    EXPECT_EQ(CleanUtf8(text), wanted);
    EXPECT_EQ(Characters(text), std::u32string(marks, U'\uFFFD'));
  }
  EXPECT_EQ(CleanUtf8("a\xC3z"), "a" + kMark + "z") << "what follows is not swallowed";
}

TEST(Texts, BytesOfOneACharacterBecomeUtf8) {
  EXPECT_EQ(AsUtf8("K\xFChl \x80"), "K\u00FChl \u0080");
}

TEST(Texts, AShortenedTextCutsNoCharacterAndSaysThatItIsCut) {
  EXPECT_EQ(Shortened("abcdef", 6), "abcdef");
  EXPECT_EQ(Shortened("abcdefg", 6), "abc...");
  EXPECT_EQ(Shortened("ab\u20ACdefg", 8), "ab\u20AC...");
  EXPECT_EQ(Shortened("ab\u20ACdefg", 7), "ab...");
  EXPECT_EQ(Shortened("ab\u20ACdefg", 6), "ab...");
  EXPECT_EQ(Shortened("\u20AC\u20AC", 5), "...");
  EXPECT_EQ(Shortened("abcd", 3), "...");
  EXPECT_EQ(Shortened("abcd", 2), "") << "not even the dots fit";
}

TEST(Texts, ALineHasNoControlCharactersAndNoBlanksAtItsEnds) {
  EXPECT_EQ(OneLine("  a\tb\r\nc\x7F"), "a b  c");
  EXPECT_EQ(OneLine(" \t\n"), "");
  EXPECT_EQ(OneLine("\x1F a \x1F"), "a");
}

TEST(Texts, AValueIsShownInQuotesAndNotLong) {
  EXPECT_EQ(Shown("a\nb"), "\"a b\"");
  EXPECT_EQ(Shown(std::string(40, 'x')), "\"" + std::string(40, 'x') + "\"");
  EXPECT_EQ(Shown(std::string(41, 'x')), "\"" + std::string(37, 'x') + "...\"");
}

TEST(Texts, NumbersStandInColumnsAsFortranHasThem) {
  EXPECT_EQ(FortranText(-1.5, 13, 5), " -1.50000E+00");
  EXPECT_EQ(FortranText(195.68339, 13, 5), "  1.95683E+02");
  EXPECT_EQ(FortranText(1e-101, 13, 5), " 1.00000E-101");
  EXPECT_EQ(FortranText(-1e-101, 13, 5), "-1.00000E-101");
  EXPECT_EQ(FortranText(-1e-101, 12, 5), "-1.00000E-101") << "more where it does not fit";
}

TEST(Texts, ColumnsAreFilledOrCut) {
  EXPECT_EQ(AtRight("ab", 4), "  ab");
  EXPECT_EQ(AtLeft("ab", 4), "ab  ");
  EXPECT_EQ(AtRight("abcde", 4), "abcd");
  EXPECT_EQ(AtLeft("abcde", 4), "abcd");
}

TEST(TextLines, EndAsTheirTextDoesAndAreCounted) {
  TextLines lines("a\r\n\nb");
  EXPECT_EQ(lines.Number(), 0U);
  EXPECT_EQ(lines.Next(), "a");
  EXPECT_TRUE(lines.LastHadItsEnd());
  EXPECT_EQ(lines.Next(), "");
  EXPECT_EQ(lines.Next(), "b");
  EXPECT_FALSE(lines.LastHadItsEnd());
  EXPECT_EQ(lines.Number(), 3U);
  EXPECT_TRUE(lines.AtEnd());
  TextLines old("a\rb\r");
  EXPECT_EQ(old.Next(), "a");
  EXPECT_EQ(old.Next(), "b");
  EXPECT_TRUE(old.AtEnd());
}

TEST(TextLines, BehindTheLastThereIsNoneAndWhoeverCatchesAnythingIsToldSo) {
  TextLines lines("a\n");
  lines.Next();
  try {
    lines.Next();
    ADD_FAILURE();
  } catch (const std::exception& stop) {
    EXPECT_STREQ(stop.what(), "the file ends here; it may have been cut off.");
  }
}

}  // namespace
}  // namespace kestrel::exchange
