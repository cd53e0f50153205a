// What is printed of the register window.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTextDocument>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kestrel {

// What is printed of the register window.
struct RegisterPages {
  std::string title;                 // lines ended by CR LF
  std::int16_t row;                  // the chosen register, kNoRegister for none
  std::optional<std::int32_t> word;  // as last read
  std::string hex;
  std::string scaled;
  std::string list;
};

// A document with the chosen register, its fields and the whole list.
[[nodiscard]] std::shared_ptr<QTextDocument> MakeDocument(const RegisterPages& pages);

}  // namespace kestrel
