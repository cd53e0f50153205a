// The fields of a register: as read, and as they would be written.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTableWidget>
#include <cstdint>
#include <optional>

namespace kestrel {

// The fields of a register: what was read, and beside it what would be written.
class FieldTable : public QTableWidget {
 public:
  FieldTable();

  using Word = std::optional<std::int32_t>;

  // A register's row with the words that are known of it; kNoRegister empties the table.
  void ShowWords(std::int16_t row, Word read, Word toWrite);

 private:
  void AddLine(const QString& bits, const QString& title, const QString& read,
               const QString& toWrite);
};

}  // namespace kestrel
