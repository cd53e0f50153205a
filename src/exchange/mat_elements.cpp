// How the elements are laid out: a tag, the data, and blanks up to a multiple of eight bytes.
// SPDX-License-Identifier: MIT
#include "exchange/mat_elements.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "exchange/texts.h"

namespace kestrel::exchange {
namespace {

// Types of elements.
constexpr std::uint32_t kInt8 = 1;
constexpr std::uint32_t kUint8 = 2;
constexpr std::uint32_t kInt32 = 5;
constexpr std::uint32_t kUint32 = 6;
constexpr std::uint32_t kDouble = 9;
constexpr std::uint32_t kMatrix = 14;
constexpr std::uint32_t kUtf16 = 17;
constexpr std::uint32_t kUtf32 = 18;

// Classes of arrays.
constexpr std::uint32_t kCells = 1;
constexpr std::uint32_t kStruct = 2;
constexpr std::uint32_t kCharacters = 4;
constexpr std::uint32_t kDoubles = 6;
constexpr std::uint32_t kBytes = 9;
constexpr std::uint32_t kIsLogical = 0x200;

constexpr std::size_t kHeaderText = 116;
constexpr std::size_t kHeaderBytes = 128;
constexpr std::size_t kFieldName = 32;  // its final zero included

template <typename Number>
std::string Bytes(Number number) {
  std::string bytes;
  for (std::size_t i = 0; i < sizeof number; ++i) {
    bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * i) & 0xFFU);
  }
  return bytes;
}

std::string Element(std::uint32_t type, const std::string& data) {
  std::string element = Bytes(type) + Bytes(static_cast<std::uint32_t>(data.size())) + data;
  element.resize((element.size() + 7) / 8 * 8);
  return element;
}

std::string Array(std::uint32_t classAndFlags, std::size_t rows, std::size_t columns,
                  std::string_view name, const std::string& content) {
  const auto size = [](std::size_t count) { return Bytes(static_cast<std::uint32_t>(count)); };
  return Element(kMatrix, Element(kUint32, Bytes(classAndFlags) + Bytes(std::uint32_t{0})) +
                              Element(kInt32, size(rows) + size(columns)) +
                              Element(kInt8, std::string(name)) + content);
}

}  // namespace

std::string MatHeader(std::string_view text) {
  std::string header = AtLeft(text, kHeaderText);
  header.resize(kHeaderBytes - 4);
  return header + Bytes(std::uint16_t{0x0100}) + "IM";
}

std::string MatNumbers(std::string_view name, const std::vector<std::vector<double>>& columns) {
  std::string data;
  for (const auto& column : columns) {
    for (const double value : column) data += Bytes(std::bit_cast<std::uint64_t>(value));
  }
  const std::size_t rows = columns.empty() ? 0 : columns.front().size();
  return Array(kDoubles, rows, columns.size(), name, Element(kDouble, data));
}

std::string MatNothing() {
  return MatNumbers("", {});
}

std::string MatLogical(bool value) {
  return Array(kBytes | kIsLogical, 1, 1, "", Element(kUint8, std::string(1, value ? '\1' : '\0')));
}

// Readers count units where one character takes two of UTF-16: such texts are written as UTF-32.
std::string MatText(std::string_view text) {
  const std::u32string characters = Characters(text);
  const bool fits = std::ranges::all_of(characters, [](char32_t c) { return c < 0x10000; });
  std::string data;
  for (const char32_t character : characters) {
    data += fits ? Bytes(static_cast<std::uint16_t>(character))
                 : Bytes(static_cast<std::uint32_t>(character));
  }
  return Array(kCharacters, characters.empty() ? 0 : 1, characters.size(), "",
               Element(fits ? kUtf16 : kUtf32, data));
}

std::string MatTexts(const std::vector<std::string>& texts) {
  std::string cells;
  for (const std::string& text : texts) cells += MatText(text);
  return Array(kCells, texts.empty() ? 0 : 1, texts.size(), "", cells);
}

std::string MatStruct(std::string_view name, const std::vector<MatField>& fields) {
  std::string names;
  std::string arrays;
  for (const MatField& field : fields) {
    std::string fieldName = field.name.substr(0, kFieldName - 1);
    fieldName.resize(kFieldName);
    names += fieldName;
    arrays += field.array;
  }
  // The length of a field's name stands in its element's own tag.
  const std::string length =
      Bytes(kInt32 | std::uint32_t{4} << 16U) + Bytes(static_cast<std::uint32_t>(kFieldName));
  return Array(kStruct, 1, 1, name, length + Element(kInt8, names) + arrays);
}

}  // namespace kestrel::exchange
