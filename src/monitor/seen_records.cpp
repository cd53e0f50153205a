// Names in two lists, each of which forgets its oldest.
// SPDX-License-Identifier: MIT
#include "monitor/seen_records.h"

#include <algorithm>
#include <sstream>

namespace kestrel::monitor {
namespace {

constexpr char kInFlash = '*';  // before the name

}  // namespace

bool SeenRecords::Add(const std::string& name, bool isInFlash) {
  if (std::ranges::find(inFlash_, name) != inFlash_.end()) return false;
  const bool isNew = std::erase(recent_, name) == 0;
  std::deque<std::string>& list = isInFlash ? inFlash_ : recent_;
  list.push_back(name);
  if (list.size() > (isInFlash ? kMostInFlash : kMostRecent)) list.pop_front();
  return isNew;
}

std::string SeenRecords::Text() const {
  std::string text;
  for (const std::string& name : inFlash_) text += kInFlash + name + " ";
  for (const std::string& name : recent_) text += name + " ";
  return text;
}

void SeenRecords::Restore(const std::string& text) {
  recent_.clear();
  inFlash_.clear();
  std::istringstream names(text);
  for (std::string name; names >> name;) {
    const bool isInFlash = name.front() == kInFlash;
    static_cast<void>(Add(isInFlash ? name.substr(1) : name, isInFlash));
  }
}

}  // namespace kestrel::monitor
