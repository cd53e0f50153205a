// The lines of a text, numbered, whatever they end with.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "exchange/readers.h"

namespace kestrel::exchange {

// Lines that end with LF or CR LF; with CR where the text holds no LF at all.
class TextLines {
 public:
  explicit TextLines(std::string_view text)
      : rest_(text), end_(text.find('\n') == std::string_view::npos ? '\r' : '\n') {}

  [[nodiscard]] bool AtEnd() const { return rest_.empty(); }
  // Of the line that was taken last, from 1; 0 before the first.
  [[nodiscard]] std::size_t Number() const { return number_; }
  // Whether that line had an end of its own, or the text ended in it.
  [[nodiscard]] bool LastHadItsEnd() const { return ended_; }

  // The next line without its end. Stops where there is none.
  std::string_view Next() {
    if (rest_.empty()) StopAtLine(number_ + 1, "the file ends here; it may have been cut off.");
    ++number_;
    const std::size_t at = rest_.find(end_);
    ended_ = at != std::string_view::npos;
    std::string_view line = rest_.substr(0, at);
    rest_.remove_prefix(ended_ ? at + 1 : rest_.size());
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }

 private:
  std::string_view rest_;
  char end_;
  std::size_t number_ = 0;
  bool ended_ = true;
};

}  // namespace kestrel::exchange
