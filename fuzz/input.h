// An input that a target consumes from its beginning.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestrel {

// An input that a target consumes from its beginning. What is asked for past its end is 0 or empty.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  [[nodiscard]] bool Empty() const { return rest_.empty(); }

  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }
  std::uint16_t Word() {  // high byte first
    const unsigned high = Byte();
    return static_cast<std::uint16_t>(high << 8U | Byte());
  }
  // One of the numbers from `first` to `last`, at most 256 of them.
  int Between(int first, int last) { return first + Byte() % (last - first + 1); }

  std::string_view Bytes(std::size_t most) {
    const std::string_view bytes = rest_.substr(0, most);
    rest_.remove_prefix(bytes.size());
    return bytes;
  }
  // Up to the next `mark`, which is taken but does not count.
  std::string_view Until(char mark) {
    const std::string_view bytes = Bytes(std::min(rest_.find(mark), rest_.size()));
    if (!rest_.empty()) rest_.remove_prefix(1);
    return bytes;
  }
  std::string_view Rest() { return Bytes(rest_.size()); }

 private:
  std::string_view rest_;
};

}  // namespace kestrel
