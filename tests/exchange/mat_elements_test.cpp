// The bytes of a MAT-file's elements.
// SPDX-License-Identifier: MIT
#include "exchange/mat_elements.h"

#include <bit>

#include "exchange/round_trip.h"

namespace kestrel::exchange {
namespace {

std::string Number(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  return LittleEndian(static_cast<unsigned>(bits), 4) +
         LittleEndian(static_cast<unsigned>(bits >> 32U), 4);
}

// Tag and data, filled up to a multiple of eight bytes.
std::string Element(unsigned type, const std::string& data) {
  std::string element =
      LittleEndian(type, 4) + LittleEndian(static_cast<unsigned>(data.size()), 4) + data;
  while (element.size() % 8 != 0) element += '\0';
  return element;
}

// An array of a class and size, with its name and what is in it.
std::string Array(unsigned arrayClass, unsigned rows, unsigned columns, const std::string& name,
                  const std::string& content) {
  return Element(14, Element(6, LittleEndian(arrayClass, 4) + LittleEndian(0, 4)) +
                         Element(5, LittleEndian(rows, 4) + LittleEndian(columns, 4)) +
                         Element(1, name) + content);
}

TEST(MatElements, AFileBeginsWithItsTextVersionAndOrderOfBytes) {
  const std::string header = MatHeader("vibration");
  EXPECT_EQ(header, "vibration" + std::string(107, ' ') + std::string(8, '\0') +
                        std::string("\x00\x01IM", 4));
  EXPECT_EQ(header.size(), 128U);
  EXPECT_EQ(MatHeader(std::string(200, 'x')).substr(0, 117), std::string(116, 'x') + '\0');
}

TEST(MatElements, NumbersStandColumnByColumn) {
  EXPECT_EQ(
      MatNumbers("three", {{1, 2, 3}, {-4, 0.5, 6}}),
      Array(6, 3, 2, "three",
            Element(9, Number(1) + Number(2) + Number(3) + Number(-4) + Number(0.5) + Number(6))));
  EXPECT_EQ(MatNothing(), Array(6, 0, 0, "", Element(9, "")));
}

TEST(MatElements, LogicalsAreBytesOfTheirOwnKind) {
  EXPECT_EQ(MatLogical(true), Array(0x209, 1, 1, "", Element(2, "\x01")));
  EXPECT_EQ(MatLogical(false), Array(0x209, 1, 1, "", Element(2, std::string(1, '\0'))));
}

TEST(MatElements, TextsAreUtf16AndUtf32WhereACharacterNeedsIt) {
  EXPECT_EQ(MatText("a\u20AC"), Array(4, 1, 2, "", Element(17, std::string("a\0\xAC\x20", 4))));
  EXPECT_EQ(MatText("\uFFFF"), Array(4, 1, 1, "", Element(17, "\xFF\xFF")));
  EXPECT_EQ(MatText("a\U00010000"),
            Array(4, 1, 2, "", Element(18, std::string("a\0\0\0\0\0\x01\0", 8))));
  EXPECT_EQ(MatText(""), Array(4, 0, 0, "", Element(17, "")));
}

TEST(MatElements, CellsHoldTheirTexts) {
  EXPECT_EQ(MatTexts({"a", "bc"}), Array(1, 1, 2, "", MatText("a") + MatText("bc")));
  EXPECT_EQ(MatTexts({}), Array(1, 0, 0, "", ""));
}

TEST(MatElements, AStructHasItsFieldsNamesInThirtyTwoBytesEach) {
  const std::string longName(40, 'n');
  const std::string names = "x" + std::string(31, '\0') + std::string(31, 'n') + '\0';
  const std::string length = LittleEndian(5 | 4U << 16U, 4) + LittleEndian(32, 4);
  EXPECT_EQ(MatStruct("record1", {{"x", MatText("a")}, {longName, MatNothing()}}),
            Array(2, 1, 1, "record1", length + Element(1, names) + MatText("a") + MatNothing()));
}

}  // namespace
}  // namespace kestrel::exchange
