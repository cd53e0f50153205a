// Arbitrary bytes read as the file of a set-up.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <string>

#include "exchange/texts.h"
#include "regmap/register_table.h"
#include "require.h"
#include "setup/difference.h"
#include "setup/setup_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel;
  BuildRegisterTable();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto read = setup::ReadSetupFile("f", bytes);
  if (!read) {
    const std::string text = read.Why().Text();
    Require(text.starts_with("f"), "a refusal names the file");
    Require(text.size() < 600 && exchange::IsUtf8(text), "and is a short text");
    return 0;
  }
  const std::string written = SetupFileText(*read);
  const auto again = setup::ReadSetupFile("g", written);
  Require(static_cast<bool>(again), "what was taken is written and taken again");
  Require(*again == *read, "as the same set-up");
  Require(DifferenceOf(*read, *again).empty(), "without a difference");
  for (std::size_t index = 0; index < setup::kRegisters; ++index) {
    Require(read->registers.at(index) <= setup::LargestOf(index), "words fit their registers");
  }
  return 0;
}
