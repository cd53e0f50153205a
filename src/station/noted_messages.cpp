// How a message box's text becomes a line.
// SPDX-License-Identifier: MIT
#include "station/noted_messages.h"

#include <algorithm>
#include <utility>

namespace kestrel {

void NotedMessages::Show(const std::string& text, const std::string& title) {
  std::string line = title.empty() ? text : title + ": " + text;
  std::erase(line, '\r');
  line.erase(0, std::min(line.find_first_not_of('\n'), line.size()));
  line.erase(line.find_last_not_of('\n') + 1);
  notes_.push_back(std::move(line));
}

std::vector<std::string> NotedMessages::Take() {
  return std::exchange(notes_, {});
}

}  // namespace kestrel
