// A place in a universal file: lines, columns of lines, and bytes between them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "exchange/readers.h"

namespace kestrel::exchange {

// Lines are counted by their LF, those among binary data too.
class UffCursor {
 public:
  explicit UffCursor(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool AtEnd() const { return rest_.empty(); }
  [[nodiscard]] std::size_t Left() const { return rest_.size(); }

  // The next line without its end. Stops where there is none, or where the file ends in it.
  std::string_view Line();
  // Whether the next line is the mark that datasets begin and end with.
  [[nodiscard]] bool AtMark() const;
  // Takes that mark, or stops and says what should have ended or begun here. At the end of the file
  // it needs no end of its own.
  void TakeMark(const char* ofWhat);
  // Takes so many bytes; no more than are left.
  std::string_view Bytes(std::size_t count);
  // Takes one end of a line where there is one.
  void SkipLineEnd();

  // The line that was taken last, from 1.
  [[nodiscard]] std::size_t Number() const { return number_; }
  [[noreturn]] void Stop(const std::string& what) const { StopAtLine(number_, what + "."); }

 private:
  std::string_view rest_;
  std::size_t number_ = 0;  // of the last line taken, from 1
};

// The columns of a line, from left to right; columns that it does not have are blank.
class UffColumns {
 public:
  UffColumns(const UffCursor& cursor, std::string_view line) : cursor_(cursor), line_(line) {}

  // Blanks at both ends left out.
  std::string_view Text(std::size_t columns);
  // Blank columns are 0, as FORTRAN has it. Any other text than a number stops with `what`.
  std::int64_t Whole(std::size_t columns, const char* what);
  double Real(std::size_t columns, const char* what);
  // The same where blank columns stop too.
  double Value(std::size_t columns, const char* what);
  // Whether nothing is left but blanks.
  [[nodiscard]] bool AtEnd() const;

 private:
  const UffCursor& cursor_;
  std::string_view line_;
};

}  // namespace kestrel::exchange
