// Words as they are typed.
// SPDX-License-Identifier: MIT
#include "transport/typed_word.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(TypedWord, DigitsOfEitherCaseWithOrWithoutPrefix) {
  struct Row {
    const char* text;
    int value;
  };
  for (const Row& row : {Row{"0", 0}, Row{"378", 0x378}, Row{"0x378", 0x378}, Row{"0XaB", 0xAB},
                         Row{"ffff", 0xFFFF}, Row{" 1C00 \t", 0x1C00}, Row{"00001234", 0x1234},
                         Row{"000000000000FFFF", 0xFFFF}, Row{"0000", 0}}) {
    const TypedWord word = ReadTypedWord(row.text);
    EXPECT_EQ(word.fault, "") << row.text;
    EXPECT_EQ(word.value, row.value) << row.text;
  }
}

TEST(TypedWord, OtherTextsAreNamed) {
  for (const char* text : {"G", "-1", "+1", "1.5", "12 34", "0x", "x12", "&H12", "\xC3\xA4"}) {
    EXPECT_EQ(ReadTypedWord(text).fault,
              '"' + std::string(text) + "\" is not a hexadecimal number.");
  }
  EXPECT_EQ(ReadTypedWord("  ").fault, "\"\" is not a hexadecimal number.");
}

TEST(TypedWord, MoreThanSixteenBitsAreNamed) {
  for (const char* text : {"10000", "12345", "123456789ABCDEF0", "0x0010000"}) {
    EXPECT_EQ(ReadTypedWord(text).fault,
              '"' + std::string(text) + "\" does not fit 16 bits (0 to FFFF).");
  }
}

TEST(TypedWord, LongTextsAreShortenedBetweenCharacters) {
  EXPECT_EQ(Quoted(std::string(40, 'x')), '"' + std::string(40, 'x') + '"');
  EXPECT_EQ(Quoted(std::string(41, 'x')), '"' + std::string(40, 'x') + "...\"");
  EXPECT_EQ(Quoted(std::string(39, 'x') + "\xC3\xA4yz"), '"' + std::string(39, 'x') + "...\"");
}

TEST(TypedWord, PaddingKeepsLongerNumbers) {
  EXPECT_EQ(PaddedHex(0, 4), "0000");
  EXPECT_EQ(PaddedHex(0xAB, 4), "00AB");
  EXPECT_EQ(PaddedHex(0xFFFF, 2), "FFFF");
}

}  // namespace
}  // namespace kestrel
