// Messages that nobody has to dismiss: kept as lines until somebody asks for them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "seams/messages.h"

namespace kestrel {

class NotedMessages : public Messages {
 public:
  using Messages::Show;
  // Line ends before and after the text are left out; a title goes before it, with a colon.
  void Show(const std::string& text, const std::string& title) override;

  [[nodiscard]] std::size_t Count() const { return notes_.size(); }
  // The messages since the last call, and forgets them.
  [[nodiscard]] std::vector<std::string> Take();

 private:
  std::vector<std::string> notes_;
};

}  // namespace kestrel
