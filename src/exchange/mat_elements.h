// The data elements of a MAT-file of level 5, uncompressed, low byte first.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrel::exchange {

// The 128 bytes that a file begins with; the text is at most 116 bytes of ASCII.
[[nodiscard]] std::string MatHeader(std::string_view text);

// Arrays as elements of their own. The name is empty for what stands in a struct or in cells.
// Columns all of one length, side by side.
[[nodiscard]] std::string MatNumbers(std::string_view name,
                                     const std::vector<std::vector<double>>& columns);
[[nodiscard]] std::string MatNothing();
[[nodiscard]] std::string MatLogical(bool value);
// A row of characters, of UTF-8.
[[nodiscard]] std::string MatText(std::string_view text);
// A row of cells.
[[nodiscard]] std::string MatTexts(const std::vector<std::string>& texts);

struct MatField {
  std::string name;   // at most 31 characters
  std::string array;  // one of the above without a name
};
[[nodiscard]] std::string MatStruct(std::string_view name, const std::vector<MatField>& fields);

}  // namespace kestrel::exchange
